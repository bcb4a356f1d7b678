// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SettingsStore.h"
#include "surfaces/SettingsAccess.h"

namespace brevok::testing {

/// The settings of the application over a store, as the real one keeps them. Login items change only after
/// the store told of the wish.
class StoredSettings final : public SettingsAccess {
public:
    explicit StoredSettings(SettingsStore &store)
        : m_store(store)
    {
    }

    [[nodiscard]] QVariant setting(const Setting &setting) const override
    {
        if (setting.key == SettingKeys::startAtLogin) {
            return m_loginItem;
        }
        return setting.type == Setting::Type::Truth ? QVariant(m_store.boolValue(setting.key))
                                                    : QVariant(m_store.integerValue(setting.key));
    }
    void setSetting(const Setting &setting, const QVariant &value, StoreWaiter waiter) override
    {
        m_store.setValue(setting.key, value);
        const bool isLoginItem = setting.key == SettingKeys::startAtLogin;
        const QString problem = isLoginItem ? loginItemProblem : QString();
        if (isLoginItem && problem.isEmpty()) {
            m_loginItem = value.toBool();
        }
        m_store.synchronize(nullptr, [waiter, problem](const std::optional<BrevokError> &error) {
            waiter.tell(error || problem.isEmpty() ? error : BrevokError{.description = problem});
        });
    }
    [[nodiscard]] bool isLocked(const Setting &setting) const override
    {
        return m_store.isLocked(setting.key);
    }

    QString loginItemProblem; ///< why it cannot be written

private:
    SettingsStore &m_store;
    bool m_loginItem = false;
};

} // namespace brevok::testing
