// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok {

/// Above this many bytes a log file is moved aside.
inline constexpr qint64 longestLog = 5'000'000;

/// Where a long log file makes way to: "PATH.1".
[[nodiscard]] QString movedAside(const QString &path);

/// Moves the log file at @p path to movedAside() when it is longer than longestLog, in the place of an older
/// one there. What is no regular file stays.
/// @return whether the file was moved
bool moveLongLogAside(const QString &path);

/// Appends standard error to the file at @p path, whose folder is created. When it grows longer than
/// longestLog, moveLongLogAside() and a new file follow, on a worker, and a new file when another program has
/// moved or deleted the old one; no line is lost. Main thread.
/// On failure, as with what is no regular file at @p path, standard error stays as it was, which is logged.
bool redirectStandardError(const QString &path);

} // namespace brevok
