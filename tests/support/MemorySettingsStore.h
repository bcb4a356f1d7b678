// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SettingsStore.h"

namespace brevok::testing {

/// A settings store in memory that counts how often it was written.
class MemorySettingsStore final : public SettingsStore {
public:
    using SettingsStore::SettingsStore;

    QVariantMap values;
    QStringList keysSetAside;
    int synchronizations = 0;

    [[nodiscard]] bool contains(const QString &key) const override { return values.contains(key); }
    [[nodiscard]] QStringList keys() const override { return values.keys(); }
    bool synchronize() override
    {
        ++synchronizations;
        return true;
    }
    void setAside(const QString &key, const QString &) override
    {
        keysSetAside.append(key);
        values.remove(key);
    }

protected:
    [[nodiscard]] QVariant storedValue(const QString &key) const override { return values.value(key); }
    void store(const QString &key, const QVariant &value) override { values.insert(key, value); }
    void erase(const QString &key) override { values.remove(key); }
};

} // namespace brevok::testing
