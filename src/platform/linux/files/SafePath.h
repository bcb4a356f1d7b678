// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <QByteArray>
#include <QByteArrayList>

#include <limits>
#include <optional>

#include <sys/types.h>

/// File calls that start at an open folder, so that nobody leads an operation elsewhere by putting a link in
/// its way while it works. Names and paths are bytes as the system has them; every failure leaves its reason
/// in errno.
namespace brevok::safepath {

/// A path's folder and the entry's own name; the folder is "." where the path names none, the name is empty
/// where the path has none of its own ("/", "..").
struct SplitPath {
    QByteArray folder;
    QByteArray name;
};
[[nodiscard]] SplitPath split(QByteArray path);

/// Opens the folder at @p path, following links: the path is the caller's own.
[[nodiscard]] FileDescriptor openFolder(const QByteArray &path);
/// Opens @p path beneath @p folder. A link in any component, the last one too, and ".." are refused.
/// Descriptors are closed on exec.
[[nodiscard]] FileDescriptor openBeneath(int folder, const QByteArray &path, int flags, mode_t mode = 0);
/// The names in a folder, sorted, or @p most of them; nothing when it cannot be read.
[[nodiscard]] std::optional<QByteArrayList> names(
    int folder, qsizetype most = std::numeric_limits<int>::max());
/// Whether @p folder has an entry of that name, a link that leads nowhere, too.
[[nodiscard]] bool exists(int folder, const QByteArray &name);
/// Renames an entry to a name that nothing may bear yet.
[[nodiscard]] bool renameExclusively(
    int fromFolder, const QByteArray &from, int toFolder, const QByteArray &to);
/// Swaps two entries, both of which exist.
[[nodiscard]] bool exchange(int oneFolder, const QByteArray &one, int otherFolder, const QByteArray &other);
/// Brings everything on the file system of @p folder to the disk, and opens nothing for that: what stands
/// there may belong to somebody who swaps it for something that is better not opened.
[[nodiscard]] bool sync(int folder);
/// Up to @p size bytes from @p offset on; fewer when the file has become shorter, nothing when it cannot be
/// read.
[[nodiscard]] std::optional<QByteArray> readBytes(int file, off_t offset, qint64 size);
/// Writes all of @p size bytes.
[[nodiscard]] bool writeAll(int file, const char *bytes, size_t size);
/// Copies the first @p size bytes of a file to the end of another. A source that has become shorter is a
/// failure (EIO); holes stay holes.
[[nodiscard]] bool copyAll(int from, int to, qint64 size);

} // namespace brevok::safepath
