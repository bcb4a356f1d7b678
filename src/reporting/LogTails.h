// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "reporting/BugReport.h"

#include <QDateTime>

namespace brevok {

/// No more bytes of a log are sent: its last ones.
inline constexpr qint64 longestTail = 256000;

/// A file and when it was changed last; what crash reports are sorted by.
struct PathWithModDate {
    QString path;
    QDateTime modDate;
};

/// The text of the file at @p path for a report, after that of a log that was moved aside: all of it, or the
/// last longestTail bytes without the line that these begin in. Bytes that are no UTF-8 become replacement
/// characters. What is missing or cannot be read (a folder, a pipe) gives a sentence that says so; nothing is
/// waited for. Any thread.
[[nodiscard]] QString logTail(const QString &path);

/// Appends one item called @p name that holds the tail of the file at @p path.
void addLogFile(const QString &path, QList<ReportItem> &items, const QString &name);

/// Appends the newest crash reports among the logs in @p logsFolder: one of InDesign, one of this program.
void addCrashReports(const QString &logsFolder, QList<ReportItem> &items);

} // namespace brevok
