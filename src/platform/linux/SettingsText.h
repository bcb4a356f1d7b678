// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QVariantMap>

#include <optional>

namespace brevok {

/// The text of a settings file: INI as QSettings reads and writes it, so that people can read and edit it. A
/// date is kept as ISO 8601 text; a key's slashes, which would be groups, are kept as "%2F".
/// @return nothing when the text could not be made
[[nodiscard]] std::optional<QByteArray> settingsText(const QVariantMap &values);

/// The values in such a text. Numbers, truths and dates are texts, which the store's typed accessors read.
/// @return nothing when @p text is no settings file
[[nodiscard]] std::optional<QVariantMap> settingsValues(const QByteArray &text);

/// Whether @p found, perhaps read from such a text, is what stays of @p value in one.
[[nodiscard]] bool sameInSettings(const QVariant &found, const QVariant &value);

} // namespace brevok
