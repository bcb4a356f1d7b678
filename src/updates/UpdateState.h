// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <optional>

namespace brevok {

/// Where a check or an update stands; all that a window shows of it.
struct UpdateState {
    enum class Phase {
        Idle, ///< nothing to show
        Checking,
        UpToDate,
        Offered, ///< waits for the user's word
        Downloading,
        Verifying,
        Installing, ///< in the system's hands
        Installed,
        Failed,
    };
    Phase phase = Phase::Idle;
    bool byUser = false; ///< the user asked for the check
    QString installedVersion{}; ///< what runs now, for users
    QString version{}; ///< the update's, for users; empty when there is none
    QString notes{}; ///< what is new: HTML or plain text, from outside
    qint64 done = 0; ///< bytes, while Downloading
    qint64 total = 0; ///< bytes
    int percent = -1; ///< while Installing; -1 when unknown
    std::optional<BrevokError> error{}; ///< when Failed

    /// Whether there is an update to install, perhaps once more.
    [[nodiscard]] bool hasOffer() const { return !version.isEmpty(); }
};

} // namespace brevok
