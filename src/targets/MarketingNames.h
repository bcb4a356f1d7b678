// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"

#include <QString>

namespace brevok {

/// The short marketing name of a host version number ("CS5.5", "CC", "-"); the text is read as it stands.
[[nodiscard]] QString getVersionString(const QString &version);

/// The marketing label of a target record: its type with the generation ("Adobe InDesign CC 2019").
[[nodiscard]] QString targetLabel(const Record &target);

/// "PATH [LABEL]", as lists of targets show it.
[[nodiscard]] QString targetCellLabel(const QString &path, const Record &target);

} // namespace brevok
