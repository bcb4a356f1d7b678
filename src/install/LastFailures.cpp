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

void LastFailures::note(const QString &prefix, const InstallOutcome &outcome)
{
    const QList<PluginOutcome> failures = outcome.failures();
    if (!failures.isEmpty()) {
        m_failures[prefix] += {.entries = failures};
        Q_EMIT changed();
    }
}

void LastFailures::forgetAll()
{
    if (!m_failures.isEmpty()) {
        m_failures.clear();
        Q_EMIT changed();
    }
}

} // namespace brevok
