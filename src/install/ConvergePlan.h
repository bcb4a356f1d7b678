// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/PackageStatus.h"

#include <QMap>
#include <QStringList>

#include <optional>

namespace brevok {

/// What the owner of a machine wants of its packages.
struct PackageWishes {
    QStringList required{}; ///< prefixes of packages that are to be installed and current
    QStringList forbidden{}; ///< prefixes of packages that are to be gone
    /// Whether every update that waits is to be installed; nothing: the person's setting says.
    std::optional<bool> autoUpdate{};
};

/// What is to be done for that, by prefixes, each once.
struct ConvergePlan {
    QStringList removals{};
    QStringList installs{}; ///< and updates
    QStringList waiting{}; ///< updates that nobody wants installed
    QStringList unknown{}; ///< required, but no package has the prefix
    QStringList notes{}; ///< sentences about wishes that cannot be met as they stand
};

/// @p statuses holds every package that the catalogue knows. A prefix that is both required and forbidden
/// counts as forbidden.
[[nodiscard]] ConvergePlan planConvergence(
    const PackageWishes &wishes, bool autoUpdate, const QMap<QString, PackageStatus> &statuses);

} // namespace brevok
