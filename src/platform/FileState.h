// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

namespace brevok {

// All of these ask the disk, which may keep silent for ever: never on the main thread.

/// What tells one state of a file from another; all zero for a missing one.
struct FileState {
    quint64 device = 0;
    quint64 inode = 0;
    qint64 size = 0;
    qint64 modified = 0; ///< in nanoseconds since 1970, like the next
    qint64 changed = 0;

    [[nodiscard]] bool operator==(const FileState &) const = default;
};

/// The state of what stands at @p path (links are followed); nothing when there is nothing.
[[nodiscard]] std::optional<FileState> fileState(const QString &path);

/// The states of files below one folder, to which the way is gone only once.
class FilesBelow final {
public:
    explicit FilesBelow(const QString &folder);
    ~FilesBelow();
    Q_DISABLE_COPY_MOVE(FilesBelow)

    /// The state of what stands at @p path, an encoded path from the folder on; nothing when there is
    /// nothing.
    [[nodiscard]] std::optional<FileState> state(const QByteArray &path) const;

private:
    int m_folder;
};

/// What the disk says of a path that names a folder.
struct FolderLook {
    bool exists = false;
    bool isFolder = false;
    QString resolved{}; ///< the path without links, dots and needless slashes, as far as it exists
    quint64 device = 0; ///< with the inode, who the folder is under any name; zero for none
    quint64 inode = 0;
};

[[nodiscard]] FolderLook lookAtFolder(const QString &path);

/// Whether two looks met one folder.
[[nodiscard]] bool isSameFolder(const FolderLook &a, const FolderLook &b);

} // namespace brevok
