// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDir>
#include <QFile>

#include <sys/stat.h>

namespace brevok::testing {

/// The names of a folder's entries, hidden ones and dead links too, sorted; empty when it is no folder.
[[nodiscard]] inline QStringList entries(const QString &folder)
{
    QStringList names = QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::NoSort);
    names.sort();
    return names;
}

/// The rights of what @p path names, of a link its own; 0 when there is nothing.
[[nodiscard]] inline mode_t modeOf(const QString &path)
{
    struct stat facts = {};
    return ::lstat(QFile::encodeName(path).constData(), &facts) == 0 ? facts.st_mode & 07777 : 0;
}

/// What is in a file; empty when it cannot be read.
[[nodiscard]] inline QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace brevok::testing
