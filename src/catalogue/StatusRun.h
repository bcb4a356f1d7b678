// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/InstalledBundles.h"
#include "catalogue/PluginDefinition.h"
#include "foundation/Tasks.h"
#include "targets/BrevokTargetApps.h"

#include <QHash>
#include <QSet>
#include <QStringList>

namespace brevok {

/// What was read of the bundles of each target, by the target's path.
using BundlesOfTargets = QHash<QString, InstalledBundles>;

/// What a calculation needs of a definition.
struct StatusBuild {
    explicit StatusBuild(const PluginDefinition &definition);

    qint64 hostVersion;
    HostCode host;
    QString name;
    QString version;
    bool pending;
    bool support;
};
[[nodiscard]] QList<StatusBuild> statusBuilds(const QList<DefinitionPtr> &definitions);

/// Everything that one calculation of package statuses reads, taken on the main thread.
struct StatusInput {
    QStringList prefixes; ///< of the packages
    QHash<QString, QList<StatusBuild>> builds; ///< by prefix
    TargetRecords validTargets;
    bool detailedLog = false;
    BundlesOfTargets known{}; ///< from the calculation before
};

struct StatusResult {
    /// Without those that depend on a target that does not answer, and of which nothing is known.
    QHash<QString, PackageStatus> statuses;
    QSet<QString> updates; ///< prefixes of which some plug-in needs an update, whatever their status
    BundlesOfTargets known; ///< which the next calculation need not find out again
};

/// The statuses of all packages of @p input. Looks at every installed bundle once, and reads those that have
/// changed. @p cameBack runs, on any thread, when a target that did not answer does. Background threads.
[[nodiscard]] StatusResult calculatedStatuses(const StatusInput &input, const Task &cameBack = {});

} // namespace brevok
