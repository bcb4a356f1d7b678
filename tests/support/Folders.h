// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDir>

namespace brevok::testing {

/// The names of a folder's entries, hidden ones and dead links too, sorted; empty when it is no folder.
[[nodiscard]] inline QStringList entries(const QString &folder)
{
    QStringList names = QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::NoSort);
    names.sort();
    return names;
}

} // namespace brevok::testing
