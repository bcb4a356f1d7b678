// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QVariantMap>

#include <optional>

namespace brevok {

/// Writes a settings file: INI as QSettings reads and writes it, so that people can read and edit it. A date
/// is kept as ISO 8601 text; a key's slashes, which would be groups, are kept as "%2F". Something else at
/// @p path is removed; the file is the user's alone.
/// @return false, with the reason, when it holds less than @p values; it may be there then
[[nodiscard]] bool writeSettings(const QString &path, const QVariantMap &values, QString *reason);

/// The values in the text of such a file. Numbers, truths and dates are texts, which the store's typed
/// accessors read.
/// @return nothing when @p text is no settings file, or could not be looked at now: then @p shortage says why
[[nodiscard]] std::optional<QVariantMap> settingsValues(const QByteArray &text, QString *shortage);

/// Whether @p found, perhaps read from such a text, is what stays of @p value in one.
[[nodiscard]] bool sameInSettings(const QVariant &found, const QVariant &value);

} // namespace brevok
