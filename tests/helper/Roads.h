// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "helper/BrevokInstaller.h"
#include "platform/linux/files/GuardedFileOperations.h"
#include "platform/linux/files/LinuxFileOperations.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <climits>
#include <map>

#include <sys/stat.h>
#include <unistd.h>

namespace brevok::testing {

/// The two ways on which files get to a target: this program's own, and that of the privileged helper.
enum class Road { Own, Helper };
inline constexpr std::array roads{Road::Own, Road::Helper};

inline InstallResult install(
    Road road, const QString &source, const QString &target, const QByteArray &checksum = {})
{
    const InstallOrder order{source, target, ::getuid(), checksum};
    if (road == Road::Own) {
        LinuxFileOperations files;
        return BrevokInstaller(files).install(order);
    }
    constexpr qint64 longest = qint64(256) * 1024 * 1024;
    std::optional<BrevokError> error;
    auto taken = GuardedFileOperations::openSource(
        source, ::getuid(), longest, GuardedFileOperations::Bytes::Any, &error);
    if (!taken || !GuardedFileOperations::takeSource(*taken, QDir::tempPath(), &error)) {
        return {.error = error, .failure = error};
    }
    // Its owner may do with it what he likes from now on.
    QFile owners(source);
    const QByteArray archive = owners.open(QIODevice::ReadWrite) ? owners.readAll() : QByteArray();
    owners.resize(0);
    GuardedFileOperations files(::getuid(), target, std::move(*taken));
    InstallResult result = BrevokInstaller(files).install(order);
    (void)files.finish();
    owners.seek(0);
    owners.write(archive);
    return result;
}

inline bool remove(Road road, const QString &target)
{
    LinuxFileOperations own;
    GuardedFileOperations guarded(::getuid(), target);
    FileOperations &files = road == Road::Own ? static_cast<FileOperations &>(own) : guarded;
    return BrevokInstaller(files).removeItemAtPath(target, nullptr);
}

inline QByteArray goalOf(const QString &link)
{
    std::array<char, PATH_MAX> goal{};
    const ssize_t size = ::readlink(QFile::encodeName(link).constData(), goal.data(), goal.size());
    return {goal.data(), std::max<ssize_t>(size, 0)};
}

/// Everything below @p folder by its name there: mode, and contents or goal.
inline std::map<QByteArray, QByteArray> treeOf(const QString &folder)
{
    std::map<QByteArray, QByteArray> tree;
    QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
        QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        struct stat facts { };
        ::lstat(QFile::encodeName(path).constData(), &facts);
        QFile file(path);
        const QByteArray contents = S_ISLNK(facts.st_mode)             ? goalOf(path)
            : S_ISREG(facts.st_mode) && file.open(QIODevice::ReadOnly) ? file.readAll()
                                                                       : QByteArray();
        tree[QFile::encodeName(path.mid(folder.size() + 1))] =
            QByteArray::number(facts.st_mode, 8) + ' ' + contents;
    }
    return tree;
}

} // namespace brevok::testing
