// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/UpdateRun.h"

#include "catalogue/BrevokPackages.h"
#include "install/InstallFlow.h"

#include <QPointer>

#include <utility>

namespace brevok {

UpdateRun::UpdateRun(InstallFlow &flow, BrevokPackages &packages, QObject *parent)
    : QObject(parent)
    , m_flow(flow)
    , m_packages(packages)
{
}

UpdateRun::~UpdateRun() = default;

void UpdateRun::start(const Completion &done)
{
    if (done) {
        m_done.append(done);
    }
    if (isRunning()) {
        m_stopped = false;
        Q_EMIT changed();
        return;
    }
    const QList<Record> packages = m_packages.waitingPackages();
    for (const Record &package : packages) {
        m_prefixes.append(package.value(PackageKeys::prefix).toString());
    }
    m_prefixes.removeDuplicates();
    m_total = m_prefixes.size();
    next();
}

void UpdateRun::stop()
{
    if (isRunning()) {
        m_stopped = true;
        Q_EMIT changed();
    }
}

void UpdateRun::next()
{
    if (m_stopped || m_prefixes.isEmpty()) {
        end();
        return;
    }
    const QString prefix = m_prefixes.takeFirst();
    ++m_current;
    Q_EMIT packageBegins(prefix);
    Q_EMIT changed();
    const Manner manner{.toldTogether = true};
    m_flow.installWithPrefix(prefix, manner, [self = QPointer(this), prefix](const InstallOutcome &outcome) {
        if (self) {
            self->m_sum += outcome;
            Q_EMIT self->packageEnded(prefix);
            self->next();
        }
    });
}

void UpdateRun::end()
{
    m_prefixes.clear();
    m_total = 0;
    m_current = 0;
    m_stopped = false;
    const InstallOutcome sum = std::exchange(m_sum, {});
    const QList<Completion> all = std::exchange(m_done, {});
    Q_EMIT changed();
    m_flow.tellTogether(sum);
    for (const Completion &done : all) {
        done(sum);
    }
}

} // namespace brevok
