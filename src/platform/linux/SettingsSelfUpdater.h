// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SelfUpdater.h"

namespace brevok {

class SettingsStore;

/// The updater of a build that packages keep current: it keeps the user's choice and never looks for itself.
class SettingsSelfUpdater final : public SelfUpdater {
public:
    /// @p settings outlives the updater.
    explicit SettingsSelfUpdater(SettingsStore &settings)
        : m_settings(settings)
    {
    }

    [[nodiscard]] bool automaticallyChecksForUpdates() const override;
    void setAutomaticallyChecksForUpdates(bool automatically) override;
    void checkForUpdates() override { checkForUpdatesInBackground(); }
    void checkForUpdatesInBackground() override;

private:
    SettingsStore &m_settings;
    bool m_said = false;
};

} // namespace brevok
