// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// The settings that the delegate offers to windows and bus, starting at login, and what befell the stores.

#include "app/BrevokAppDelegate.h"
#include "app/Shared.h"
#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "platform/LoginItems.h"
#include "platform/Platform.h"
#include "platform/SettingsStore.h"

namespace brevok {

// Later, so that the store does not wait for the user's answer.
void BrevokAppDelegate::tellOfDamage()
{
    connect(m_with.platform.state.get(), &StateStore::damaged, this, [this](const QString &keptAs) {
        onMain(this, [this, keptAs] {
            m_shared->alerts->tell(Texts::tr("The stored data of Tolvane Brevok was damaged"),
                Texts::tr("Everything that could be read is in use. The damaged file was kept as %1.")
                    .arg(keptAs),
                {Texts::tr("OK")});
        });
    });
}

QUrl BrevokAppDelegate::appURL() const
{
    return QUrl::fromLocalFile(m_with.bundle.bundlePath());
}

bool BrevokAppDelegate::willStartAtLogin(const QUrl &application) const
{
    return m_with.platform.loginItems->contains(application);
}

void BrevokAppDelegate::setStartAtLogin(const QUrl &application, bool enabled, StoreWaiter waiter)
{
    m_with.platform.loginItems->set(application, enabled, std::move(waiter));
}

QVariant BrevokAppDelegate::setting(const Setting &setting) const
{
    const SettingsStore &settings = *m_with.platform.settings;
    if (setting.key == SettingKeys::startAtLogin) {
        return startAtLogin();
    }
    return setting.type == Setting::Type::Truth ? QVariant(settings.boolValue(setting.key))
                                                : QVariant(settings.integerValue(setting.key));
}

void BrevokAppDelegate::setSetting(const Setting &setting, const QVariant &value, StoreWaiter waiter)
{
    const auto store = [this, waiter = std::move(waiter)](const std::optional<BrevokError> &noLoginItem) {
        if (noLoginItem) {
            waiter.tell(noLoginItem);
            return;
        }
        m_with.platform.settings->synchronize(this, [waiter](const auto &error) { waiter.tell(error); });
    };
    if (setting.key == SettingKeys::startAtLogin) {
        setStartAtLogin(value.toBool(), {this, store});
    } else {
        m_with.platform.settings->setValue(setting.key, value); // whom it concerns observes its key
        store({});
    }
}

bool BrevokAppDelegate::isLocked(const Setting &setting) const
{
    return m_with.platform.settings->isLocked(setting.key);
}

void BrevokAppDelegate::setStartAtLogin(bool enabled, StoreWaiter waiter)
{
    Q_EMIT startAtLoginWillChange();
    m_with.platform.settings->setValue(SettingKeys::startAtLogin, enabled);
    const bool counts = m_with.platform.settings->boolValue(SettingKeys::startAtLogin); // it may be locked
    setStartAtLogin(appURL(), counts, std::move(waiter));
    Q_EMIT startAtLoginChanged();
}

bool BrevokAppDelegate::showNotifications() const
{
    return m_with.platform.settings->boolValue(SettingKeys::showNotifications);
}

void BrevokAppDelegate::setShowNotifications(bool enabled)
{
    m_with.platform.settings->setValue(SettingKeys::showNotifications, enabled);
}

bool BrevokAppDelegate::checkForUpdates() const
{
    return m_shared->updater->automaticallyChecksForUpdates();
}

void BrevokAppDelegate::setCheckForUpdates(bool enabled)
{
    m_shared->updater->setAutomaticallyChecksForUpdates(enabled);
}

bool BrevokAppDelegate::autoUpdate() const
{
    return m_with.platform.settings->boolValue(SettingKeys::autoUpdate);
}

void BrevokAppDelegate::setAutoUpdate(bool enabled)
{
    m_with.platform.settings->setValue(SettingKeys::autoUpdate, enabled);
}

int BrevokAppDelegate::logLevel() const
{
    return m_with.platform.settings->integerValue(SettingKeys::logLevel);
}

void BrevokAppDelegate::setLogLevel(int level)
{
    m_with.platform.settings->setValue(SettingKeys::logLevel, level);
}

} // namespace brevok
