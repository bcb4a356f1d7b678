// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

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

/// What --json prints where there is no other document: whether all went well, what did not, and what became
/// of each plug-in where that is told.
[[nodiscard]] QString failuresText(
    const QStringList &failures, const std::optional<QJsonArray> &outcome = std::nullopt);

} // namespace brevok::client
