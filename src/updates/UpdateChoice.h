// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "updates/Appcast.h"

namespace brevok {

/// What an update must suit.
struct UpdateRules {
    QString installedVersion; ///< only newer ones are updates
    QString installedShownVersion{}; ///< what users see of it: no package says less of itself; may be empty
    QString systemVersion{}; ///< empty when the system does not tell: then every minimum is met
    QString channel{}; ///< offered beside the stable one; may be empty
    QString skippedVersion{}; ///< neither this one nor an older one is offered; may be empty
};

/// What a feed means for this program.
struct UpdateChoice {
    std::optional<AppcastItem> item{}; ///< the update; nothing when there is none
    QString refusal{}; ///< why the newest suitable version is passed over, localised; empty when it is not
};

/// The newest of @p items that is newer than what is installed, runs on this system, and can be downloaded
/// and verified.
[[nodiscard]] UpdateChoice chooseUpdate(const QList<AppcastItem> &items, const UpdateRules &rules);

} // namespace brevok
