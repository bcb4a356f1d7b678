// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/BrevokPlugins.h"

#include <functional>

namespace brevok {

/// The packages and definitions that share plug-ins, as plain values for background work.
struct CatalogueSnapshot {
    QList<Record> packages;
    DefinitionSnapshot definitions;
};

/// Why a plug-in may not be removed, in a few words.
[[nodiscard]] QString neededByAnotherPackage();

/// Whether a plug-in may be removed without breaking another package: it may not when another package uses a
/// plug-in of the same name and all of that package's plug-ins stand in the same folder. @p exists is asked
/// about paths of plug-ins. A missing argument is answered no, with a log line.
[[nodiscard]] bool canRemovePlugin(const QString &name, const QString &pluginPath, const QString &prefix,
    const CatalogueSnapshot &catalogue, const std::function<bool(const QString &path)> &exists);

} // namespace brevok
