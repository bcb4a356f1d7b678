// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/SettingsSelfUpdater.h"

#include "foundation/Log.h"
#include "platform/SettingsStore.h"

namespace brevok {

namespace {

QString checksKey()
{
    return QStringLiteral("SUEnableAutomaticChecks");
}

} // namespace

bool SettingsSelfUpdater::automaticallyChecksForUpdates() const
{
    return m_settings.boolValue(checksKey());
}

void SettingsSelfUpdater::setAutomaticallyChecksForUpdates(bool automatically)
{
    m_settings.setValue(checksKey(), automatically);
}

void SettingsSelfUpdater::checkForUpdatesInBackground()
{
    if (!m_said) {
        m_said = true;
        logLine(QStringLiteral("Update check is not available in this build."));
    }
}

} // namespace brevok
