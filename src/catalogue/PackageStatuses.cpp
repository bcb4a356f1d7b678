// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// The status operations of the packages: when to calculate, what to tell.

#include "catalogue/BrevokPackages.h"
#include "catalogue/CatalogueKeys.h"
#include "catalogue/StatusRun.h"
#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "platform/StateStore.h"

#include <QPointer>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int lazyNotificationMs = 1000;

} // namespace

void BrevokPackages::calculatePackageStatuses()
{
    if (m_updating) {
        m_needUpdate = true;
        return;
    }
    m_updating = true;
    m_needUpdate = false;

    StatusInput input{.prefixes = {},
        .definitions = m_plugins.snapshot(),
        .validTargets = m_targets.validTargets(),
        .detailedLog = detailedLog(),
        .known = *m_known};
    QSet<QString> known;
    for (const auto &entry : m_packages) {
        const QString prefix = nonEmptyString(entry.second.value(PackageKeys::prefix));
        if (!prefix.isNull() && !known.contains(prefix)) {
            known.insert(prefix);
            input.prefixes.append(prefix);
        }
    }
    ++m_runsUnderWay;
    inBackground([input = std::move(input), run = ++m_lastRun, self = QPointer<BrevokPackages>(this)] {
        const auto calculateAgain = [self] {
            onMain(QCoreApplication::instance(), [self] {
                if (self) {
                    self->calculatePackageStatuses();
                }
            });
        };
        StatusResult result = calculatedStatuses(input, calculateAgain);
        onMain(QCoreApplication::instance(), [self, run, result = std::move(result)] {
            if (self) {
                self->statusesCalculated(result, run);
            }
        });
    });
}

void BrevokPackages::statusesCalculated(const StatusResult &result, quint64 run)
{
    --m_runsUnderWay;
    // The calculation at start may be overtaken by the next one; the newer result stays.
    if (run > m_appliedRun) {
        m_appliedRun = run;
        m_status.insert(result.statuses);
        *m_known = result.known;
        Q_EMIT packagesStatusChanged();
    }
    notifyPackageStatusesLazily();
    m_updating = false;
    if (m_needUpdate) {
        onMain(this, [this] { calculatePackageStatuses(); });
    } else if (m_runsUnderWay == 0) {
        Q_EMIT statusesSettled();
    }
}

void BrevokPackages::notifyPackageStatusesLazily()
{
    m_statusTimer.start(lazyNotificationMs);
}

void BrevokPackages::notifyPackageStatuses()
{
    const QSet<QString> previous(m_notified.cbegin(), m_notified.cend());
    QStringList names;
    QStringList newNames;
    for (const auto &[name, package] : m_packages) {
        const PackageStatus status =
            m_status.value(package.value(PackageKeys::prefix).toString(), PackageStatus::MissingData);
        if (waitsForUpdate(status)) {
            names.append(name);
            if (!previous.contains(name)) {
                newNames.append(name);
            }
        }
    }
    StateChanges changes;
    for (const QString &name : std::as_const(newNames)) {
        changes.append({CatalogueKeys::notifiedPackages, name, Record()});
    }
    const QSet<QString> current(names.cbegin(), names.cend());
    for (const QString &name : std::as_const(m_notified)) {
        if (!current.contains(name)) {
            changes.append({CatalogueKeys::notifiedPackages, name, std::nullopt});
        }
    }
    m_notified = names;
    if (!changes.isEmpty()) {
        m_state.commit(changes);
    }
    m_updates = static_cast<int>(names.size());
    Q_EMIT updatesChanged(m_updates);
    if (!m_showNotifications) {
        showUpdateResult(newNames);
    }
}

void BrevokPackages::forgetNotified(const QString &name)
{
    if (m_notified.removeAll(name) > 0) {
        m_state.commit({{CatalogueKeys::notifiedPackages, name, std::nullopt}});
    }
}

void BrevokPackages::showUpdateResult(const QStringList &newNames)
{
    QString title = Texts::tr("You're up-to-date!");
    QString label = Texts::tr("There are no new Plug-In updates available.");
    if (newNames.size() == 1) {
        title = Texts::tr("Plug-In update available!");
        label = Texts::tr("%1 Plug-In update is available.").arg(newNames.first());
    } else if (!newNames.isEmpty()) {
        title = Texts::tr("Plug-In updates available!");
        label = Texts::tr("You have %1 Plug-In updates available.").arg(newNames.size());
    }
    Q_EMIT updateResult(title, label);
    m_showNotifications = true;
}

} // namespace brevok
