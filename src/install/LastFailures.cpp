// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/LastFailures.h"

#include "catalogue/BrevokPackages.h"

namespace brevok {

LastFailures::LastFailures(BrevokPackages &packages, QObject *parent)
    : QObject(parent)
{
    connect(&packages, &BrevokPackages::checkFinished, this, [this](bool ok) {
        if (ok) {
            forgetAll();
        }
    });
}

LastFailures::~LastFailures() = default;

void LastFailures::forget(const QString &prefix)
{
    if (m_failures.remove(prefix)) {
        Q_EMIT changed();
    }
}

void LastFailures::note(const QString &prefix, const QString &name, const InstallOutcome &outcome)
{
    const QList<PluginOutcome> failures = outcome.failures();
    if (!failures.isEmpty()) {
        m_failures[prefix].insert(name, {.entries = failures});
        Q_EMIT changed();
    } else if (m_failures.contains(prefix) && m_failures[prefix].remove(name) > 0) {
        Q_EMIT changed();
    }
}

InstallOutcome LastFailures::of(const QString &prefix) const
{
    InstallOutcome sum;
    const QMap<QString, InstallOutcome> outcomes = m_failures.value(prefix);
    for (const InstallOutcome &outcome : outcomes) {
        sum += outcome;
    }
    return sum;
}

QHash<QString, InstallOutcome> LastFailures::all() const
{
    QHash<QString, InstallOutcome> all;
    for (auto entry = m_failures.cbegin(); entry != m_failures.cend(); ++entry) {
        if (!entry->isEmpty()) {
            all.insert(entry.key(), of(entry.key()));
        }
    }
    return all;
}

void LastFailures::forgetAll()
{
    if (!m_failures.isEmpty()) {
        m_failures.clear();
        Q_EMIT changed();
    }
}

} // namespace brevok
