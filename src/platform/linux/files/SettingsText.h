// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QVariantMap>

#include <optional>

namespace brevok {

/// The text of a settings file: INI in UTF-8, with the escapes of QSettings, which earlier versions wrote and
/// which can read it. A date is kept as ISO 8601 text.
[[nodiscard]] QByteArray settingsText(const QVariantMap &values);

/// The values in such a file, also when a person edited it: comments, groups (a group's name and a slash
/// begin the names of its keys) and lines continued after a backslash. Numbers, truths and dates are texts,
/// which the store's typed accessors read.
/// @return nothing when @p bytes are no settings file: a line is neither group nor value, or there is a NUL
[[nodiscard]] std::optional<QVariantMap> settingsValues(const QByteArray &bytes);

/// Whether @p found, perhaps read from such a text, is what stays of @p value in one.
[[nodiscard]] bool sameInSettings(const QVariant &found, const QVariant &value);

} // namespace brevok
