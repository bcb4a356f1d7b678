// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonObject>
#include <QString>

namespace brevok::client {

/// The status document in the text form that node exporters read, for @p user, whose name every sample bears:
/// several users of a machine share a folder.
[[nodiscard]] QString metricsText(const QJsonObject &status, const QString &user);

/// Writes @p text to the file @p path, or to a file for @p user in the folder @p path, in one step, readable
/// by all. @return why that failed; empty when it did not
[[nodiscard]] QString writeMetrics(const QString &path, const QString &user, const QString &text);

/// The name of the user who runs this process.
[[nodiscard]] QString userName();

} // namespace brevok::client
