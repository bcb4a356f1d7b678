// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLoggingCategory>
#include <QString>

#include <optional>

namespace brevok {

struct BrevokError;

Q_DECLARE_LOGGING_CATEGORY(lcBrevok)

/// Writes one line to the system log call, which start-up routes into the log file. Any thread.
/// Nothing secret may be passed: no password, session id or cookie. What is not plain goes through
/// messageForLog() on its way.
void logLine(const QString &line);

/// The one way errors are logged: "Error: …", then one line per detailed error or one with the error's own
/// facts. Nothing is written for an absent error. Any thread.
void logError(const std::optional<BrevokError> &error);

/// Whether the detailed lines are wanted (`OrlecLogLevel` above 0). Any thread.
[[nodiscard]] bool detailedLog();

/// Follows the setting `OrlecLogLevel`; called on the main thread at start and when the setting changes.
void setLogLevel(int level);

/// What stands in the log for @p message: no longer than some pages, without what controls a terminal or
/// turns the direction of writing, without the secrets that withoutSecrets() knows, and no line of it like
/// the beginning of another.
[[nodiscard]] QString messageForLog(const QString &message);

/// Makes every log line carry date, time, process and thread, one line a message, and go to standard error.
/// Called once by a program's main().
void installLogFormat();

/// Has @p look called after each line that was written, on the thread that logged; it logs nothing itself.
void callAfterEachLine(void (*look)());

} // namespace brevok
