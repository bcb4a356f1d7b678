// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/BrevokPackages.h"
#include "install/InstallOutcome.h"
#include "targets/BrevokTargetApps.h"

#include <QJsonArray>

namespace brevok {

/// The packages in the given order, each with its status and with what failed lately, if anything did.
[[nodiscard]] QJsonArray packagesDocument(const QList<Record> &packages,
    const QHash<QString, PackageStatus> &statuses, const QHash<QString, InstallOutcome> &failures);

/// What became of each plug-in and target.
[[nodiscard]] QJsonArray outcomeDocument(const InstallOutcome &outcome);

/// All stored targets, by path.
[[nodiscard]] QJsonArray targetsDocument(const TargetRecords &records);

/// The warning that changes cannot be stored; @p problem says why.
[[nodiscard]] QString storageWarning(const QString &problem);

} // namespace brevok
