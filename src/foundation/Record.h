// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace brevok {

/// A record is a string-keyed dictionary; keys that this program does not know survive every round trip.
using Record = QJsonObject;

/// The text of @p value when it is a string of length above 0, else a null string.
[[nodiscard]] QString nonEmptyString(const QJsonValue &value);

/// Whether @p value counts as a number. A JSON boolean does: the system's dictionaries keep both as numbers.
[[nodiscard]] bool isNumber(const QJsonValue &value);

/// The integer value of a number (truncated toward zero), boolean (0 or 1) or text (see leadingInteger());
/// else 0.
[[nodiscard]] qint64 integerValue(const QJsonValue &value);

/// The decimal integer at the start of @p text, after blanks and one sign; 0 when there is none. Saturates.
[[nodiscard]] qint64 leadingInteger(QStringView text);

/// The decimal number at the start of @p text, after blanks, as single precision; 0 when there is none.
[[nodiscard]] float leadingFloat(QStringView text);

/// A value as the system's text formatter prints it: numbers without a trailing ".0", booleans as 1 and 0,
/// nothing as "(null)", collections as compact JSON.
[[nodiscard]] QString displayText(const QJsonValue &value);

/// The same value with U+FFFD for every half of a surrogate pair that stands alone, in texts and keys: no
/// encoding can carry those.
[[nodiscard]] QJsonValue wellFormed(const QJsonValue &value);
[[nodiscard]] QString wellFormed(const QString &text);

/// Whether texts in this JSON may hold such halves: only escapes can.
[[nodiscard]] bool mayHoldHalfCharacters(const QByteArray &json);

/// @p text, or "-" when it is empty.
[[nodiscard]] QString orDash(const QString &text);

/// The record or list in what an earlier version kept in the settings: JSON, compressed, in base64. Undefined
/// when @p data is no such archive.
[[nodiscard]] QJsonValue unarchived(const QByteArray &data);

} // namespace brevok
