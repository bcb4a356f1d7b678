// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/PackageStatus.h"
#include "catalogue/PluginDefinition.h"
#include "targets/BrevokTargetApps.h"

#include <QHash>
#include <QSet>
#include <QStringList>

namespace brevok {

/// The path of the installed bundle of the plug-in @p name in the target at @p targetPath.
[[nodiscard]] QString installedPluginPath(const QString &targetPath, const QString &name);

/// Everything that one calculation of package statuses reads, taken on the main thread.
struct StatusInput {
    QStringList prefixes; ///< of the packages
    DefinitionSnapshot definitions;
    TargetRecords validTargets;
    bool detailedLog = false;
};

struct StatusResult {
    QHash<QString, PackageStatus> statuses;
    QSet<QString> updates; ///< prefixes of which some plug-in needs an update, whatever their status
};

/// The statuses of all packages of @p input. Reads every installed bundle at most once. Any thread.
[[nodiscard]] StatusResult calculatedStatuses(const StatusInput &input);

} // namespace brevok
