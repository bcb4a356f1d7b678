// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>
#include <QString>

namespace brevok {

/// What stands in the name of a file on its way to its place, behind the name that it is to get.
inline constexpr QLatin1StringView partMark(".part-");

/// Removes files on their way to a place in @p folder or in a folder there that nobody has written to between
/// @p before and now. Asks the disk: not on the main thread.
void removePartsOf(const QString &folder, const QDateTime &before);

} // namespace brevok
