// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace brevok::client {

/// Writes @p text to standard output.
/// @return false when not all of it could be written, which standard error then tells
[[nodiscard]] bool printResult(const QString &text);

/// Writes @p text to standard error, where losing it changes nothing.
void printNote(const QString &text);

/// The one line on standard error that says why a call failed.
void printComplaint(const QString &reason);

/// @p document as it is printed under --json.
[[nodiscard]] QString documentText(const QJsonObject &document);
/// The same for a document that is text already.
[[nodiscard]] QString documentText(const QString &json);

/// What --json prints where there is no other document: whether all went well, and what did not.
[[nodiscard]] QString failuresText(const QStringList &failures);

} // namespace brevok::client
