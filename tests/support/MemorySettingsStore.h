// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SettingsStore.h"

namespace brevok::testing {

/// A settings store in memory, whose disk takes nothing while the test says why.
class MemorySettingsStore final : public SettingsStore {
public:
    using SettingsStore::SettingsStore;

    QVariantMap values;

    void setProblem(const QString &problem)
    {
        m_problem = problem;
        if (problem.isEmpty()) {
            Q_EMIT mended();
        } else {
            Q_EMIT troubled(problem);
        }
    }

    [[nodiscard]] bool contains(const QString &key) const override { return values.contains(key); }
    [[nodiscard]] QStringList keys() const override { return values.keys(); }
    bool finish(int) override { return true; }
    [[nodiscard]] QString problem() const override { return m_problem; }
    void setAside(const QString &key, const QString &) override { values.remove(key); }

protected:
    [[nodiscard]] QVariant storedValue(const QString &key) const override { return values.value(key); }
    void store(const QString &key, const QVariant &value) override { values.insert(key, value); }
    void erase(const QString &key) override { values.remove(key); }
    void write(StoreWaiter waiter) override
    {
        const auto tell = [this, waiter = std::move(waiter)] {
            waiter.tell(
                m_problem.isEmpty() ? std::nullopt : std::optional(BrevokError{.description = m_problem}));
        };
        QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
    }

private:
    QString m_problem;
};

} // namespace brevok::testing
