// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileState.h"

#include <QByteArray>

#include <optional>

namespace brevok {

/// The contents of the regular file at @p path (links are followed); nothing when it is absent, longer than
/// @p limit bytes, cannot be read, or is anything else, which is never waited for. Any thread.
/// @p state is what the file was before it was read, when it could be opened.
[[nodiscard]] std::optional<QByteArray> readRegularFile(
    const QString &path, qint64 limit, FileState *state = nullptr);

/// The end of a file.
struct FileTail {
    QByteArray bytes;
    bool whole = true; ///< nothing of the file stands before them
};
/// The last @p limit bytes of the regular file at @p path, all of a shorter one; nothing and no wait as
/// above. However long the file is or grows, no more than these bytes are read. Any thread.
[[nodiscard]] std::optional<FileTail> readFileTail(const QString &path, qint64 limit);

} // namespace brevok
