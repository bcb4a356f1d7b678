// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// The settings that the delegate offers to windows and bus, and starting at login.

#include "app/BrevokAppDelegate.h"
#include "app/SettingsKeys.h"
#include "app/Shared.h"
#include "platform/LoginItems.h"
#include "platform/Platform.h"
#include "platform/SettingsStore.h"

namespace brevok {

QUrl BrevokAppDelegate::appURL() const
{
    return QUrl::fromLocalFile(m_with.bundle.bundlePath());
}

bool BrevokAppDelegate::willStartAtLogin(const QUrl &application) const
{
    return m_with.platform.loginItems->contains(application);
}

void BrevokAppDelegate::setStartAtLogin(const QUrl &application, bool enabled)
{
    LoginItems &items = *m_with.platform.loginItems;
    const bool present = items.contains(application);
    if (enabled && !present) {
        items.insert(application);
    } else if (!enabled && present) {
        items.remove(application);
    }
}

bool BrevokAppDelegate::startAtLogin() const
{
    return willStartAtLogin(appURL());
}

void BrevokAppDelegate::setStartAtLogin(bool enabled)
{
    Q_EMIT startAtLoginWillChange();
    keep(AppKeys::startAtLogin, enabled);
    setStartAtLogin(appURL(), m_with.platform.settings->boolValue(AppKeys::startAtLogin)); // it may be locked
    Q_EMIT startAtLoginChanged();
}

// What the user set is on the disk when the setter returns.
void BrevokAppDelegate::keep(const QString &key, const QVariant &value)
{
    m_with.platform.settings->setValue(key, value);
    m_with.platform.settings->synchronize();
}

bool BrevokAppDelegate::showNotifications() const
{
    return m_with.platform.settings->boolValue(AppKeys::showNotifications);
}

void BrevokAppDelegate::setShowNotifications(bool enabled)
{
    keep(AppKeys::showNotifications, enabled);
}

bool BrevokAppDelegate::checkForUpdates() const
{
    return m_shared->updater->automaticallyChecksForUpdates();
}

void BrevokAppDelegate::setCheckForUpdates(bool enabled)
{
    m_shared->updater->setAutomaticallyChecksForUpdates(enabled);
    m_with.platform.settings->synchronize();
}

bool BrevokAppDelegate::autoUpdate() const
{
    return m_with.platform.settings->boolValue(AppKeys::autoUpdate);
}

void BrevokAppDelegate::setAutoUpdate(bool enabled)
{
    keep(AppKeys::autoUpdate, enabled);
}

int BrevokAppDelegate::logLevel() const
{
    return m_with.platform.settings->integerValue(AppKeys::logLevel);
}

void BrevokAppDelegate::setLogLevel(int level)
{
    keep(AppKeys::logLevel, level);
}

QString BrevokAppDelegate::problem() const
{
    return m_with.platform.settings->problem();
}

bool BrevokAppDelegate::isLocked(const QString &key) const
{
    return m_with.platform.settings->isLocked(key);
}

} // namespace brevok
