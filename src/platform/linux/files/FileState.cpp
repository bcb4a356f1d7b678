// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/FileState.h"

#include "foundation/Paths.h"
#include "platform/linux/files/FileStateOf.h"

#include <QFile>

#include <filesystem>

#include <fcntl.h>
#include <unistd.h>

namespace brevok {

std::optional<FileState> fileState(const QString &path)
{
    struct stat facts { };
    if (::stat(QFile::encodeName(path).constData(), &facts) != 0) {
        return std::nullopt;
    }
    return fileState(facts);
}

FilesBelow::FilesBelow(const QString &folder)
    : m_folder(::open(QFile::encodeName(folder).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC))
{
}

FilesBelow::~FilesBelow()
{
    if (m_folder >= 0) {
        ::close(m_folder);
    }
}

std::optional<FileState> FilesBelow::state(const QByteArray &path) const
{
    struct stat facts { };
    const bool found = m_folder >= 0 && ::fstatat(m_folder, path.constData(), &facts, 0) == 0;
    return found ? std::optional(fileState(facts)) : std::nullopt;
}

FolderLook lookAtFolder(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    FolderLook look;
    struct stat facts { };
    if (::stat(name.constData(), &facts) == 0) {
        look = {.exists = true,
            .isFolder = S_ISDIR(facts.st_mode),
            .device = facts.st_dev,
            .inode = facts.st_ino};
    }
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(name.toStdString(), error);
    look.resolved = withoutTrailingSlashes(error ? path : QFile::decodeName(resolved.c_str()));
    return look;
}

bool isSameFolder(const FolderLook &a, const FolderLook &b)
{
    const bool known = a.inode != 0 || a.device != 0;
    return a.resolved == b.resolved || (known && a.inode == b.inode && a.device == b.device);
}

} // namespace brevok
