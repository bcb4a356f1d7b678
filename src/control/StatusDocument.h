// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/BrevokPackages.h"
#include "targets/BrevokTargetApps.h"

#include <QJsonArray>

namespace brevok {

/// The packages in the given order, each with its status.
[[nodiscard]] QJsonArray packagesDocument(
    const QList<Record> &packages, const QHash<QString, PackageStatus> &statuses);

/// All stored targets, by path.
[[nodiscard]] QJsonArray targetsDocument(const TargetRecords &records);

/// What is said of @p problem, why nothing can be stored.
[[nodiscard]] QString storageWarning(const QString &problem);

} // namespace brevok
