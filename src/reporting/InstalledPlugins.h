// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"

#include <QList>

#include <optional>

namespace brevok {

/// The information dictionaries of the plug-ins that stand in the folder "Tolvane" of a target, in order of
/// their names; nothing for one whose dictionary cannot be read. Empty when there is no such folder. Any
/// thread.
[[nodiscard]] QList<std::optional<Record>> installedPlugins(const QString &targetPath);

/// The operating system's version string.
[[nodiscard]] QString operatingSystemVersion();

} // namespace brevok
