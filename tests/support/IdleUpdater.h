// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SelfUpdater.h"

namespace brevok::testing {

/// For tests that are about something else.
class IdleUpdater : public SelfUpdater {
public:
    [[nodiscard]] bool canUpdate() const override { return true; }
    [[nodiscard]] bool automaticallyChecksForUpdates() const override { return false; }
    void setAutomaticallyChecksForUpdates(bool) override { }
    void checkForUpdates() override { }
    void checkForUpdatesInBackground() override { }
};

} // namespace brevok::testing
