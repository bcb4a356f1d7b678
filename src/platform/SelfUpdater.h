// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

namespace brevok {

/// The application's own updater. Main thread.
class SelfUpdater {
public:
    SelfUpdater() = default;
    virtual ~SelfUpdater() = default;
    Q_DISABLE_COPY_MOVE(SelfUpdater)

    /// Whether this copy can find and install updates at all.
    [[nodiscard]] virtual bool canUpdate() const = 0;
    [[nodiscard]] virtual bool automaticallyChecksForUpdates() const = 0;
    virtual void setAutomaticallyChecksForUpdates(bool automatically) = 0;
    /// The user's own check: whatever it finds is shown, the version too that the user skipped before.
    virtual void checkForUpdates() = 0;
    /// Looks for a newer version without showing anything unless one is found.
    virtual void checkForUpdatesInBackground() = 0;
};

} // namespace brevok
