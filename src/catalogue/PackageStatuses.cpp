// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PackageStatuses.h"

#include "catalogue/BrevokPlugins.h"
#include "catalogue/PackageRecords.h"
#include "foundation/Log.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>

namespace brevok {

PackageStatuses::PackageStatuses(const PackageRecords &packages, const BrevokPlugins &plugins,
    const BrevokTargetApps &targets, QObject *parent)
    : QObject(parent)
    , m_packages(packages)
    , m_plugins(plugins)
    , m_targets(targets)
{
}

PackageStatuses::~PackageStatuses() = default;

void PackageStatuses::calculate()
{
    m_wantAll = true;
    begin();
}

void PackageStatuses::calculateFor(const QStringList &plugins)
{
    m_wantedPlugins.unite(QSet<QString>(plugins.cbegin(), plugins.cend()));
    begin();
}

void PackageStatuses::calculateRest()
{
    if (m_restIsOld) {
        calculate();
    }
}

void PackageStatuses::begin()
{
    if (m_updating) {
        m_needUpdate = true;
        return;
    }
    m_updating = true;
    m_needUpdate = false;
    const QSet<QString> plugins = std::exchange(m_wantedPlugins, {});
    // The result of a part does not stand for that of the whole which it overtakes.
    const bool wholeIsMissing = m_appliedRun == 0 || m_runsUnderWay > 0;
    const bool all = std::exchange(m_wantAll, false) || wholeIsMissing;
    m_restIsOld = !all;
    ++m_runsUnderWay;
    inBackground([input = all ? inputForAll() : inputFor(plugins), run = ++m_lastRun, all,
                     self = QPointer<PackageStatuses>(this)] {
        const auto calculateAgain = [self] {
            onMain(QCoreApplication::instance(), [self] {
                if (self) {
                    self->calculate();
                }
            });
        };
        StatusResult result = calculatedStatuses(input, calculateAgain);
        onMain(QCoreApplication::instance(), [self, run, all, result = std::move(result)] {
            if (self) {
                self->apply(result, run, all);
            }
        });
    });
}

StatusInput PackageStatuses::inputForAll() const
{
    StatusInput input{.prefixes = m_packages.prefixes(),
        .builds = {},
        .validTargets = m_targets.validTargets(),
        .detailedLog = detailedLog(),
        .known = m_known};
    for (const QString &prefix : std::as_const(input.prefixes)) {
        input.builds.insert(prefix, statusBuilds(m_plugins.pluginIndex().value(prefix)));
    }
    return input;
}

StatusInput PackageStatuses::inputFor(const QSet<QString> &plugins) const
{
    StatusInput input{.prefixes = {},
        .builds = {},
        .validTargets = m_targets.validTargets(),
        .detailedLog = detailedLog(),
        .known = {}};
    for (const QString &plugin : plugins) {
        const QSet<QString> prefixes = m_plugins.prefixesWith(plugin);
        for (const QString &prefix : prefixes) {
            if (m_packages.hasPrefix(prefix) && !input.builds.contains(prefix)) {
                input.prefixes.append(prefix);
                input.builds.insert(prefix, statusBuilds(m_plugins.pluginIndex().value(prefix)));
            }
        }
    }
    for (auto target = input.validTargets.cbegin(); target != input.validTargets.cend(); ++target) {
        const InstalledBundles &all = m_known.value(target.key());
        InstalledBundles &some = input.known[target.key()];
        for (const QList<StatusBuild> &builds : std::as_const(input.builds)) {
            for (const StatusBuild &build : builds) {
                if (const auto known = all.constFind(build.name); known != all.cend()) {
                    some.insert(build.name, *known);
                }
            }
        }
    }
    return input;
}

void PackageStatuses::apply(const StatusResult &result, quint64 run, bool all)
{
    --m_runsUnderWay;
    // The calculation at start may be overtaken by the next one; the newer result stays.
    QStringList changed;
    if (run > m_appliedRun) {
        m_appliedRun = run;
        changed = takeOver(result, all);
    }
    Q_EMIT calculated(changed);
    m_updating = false;
    if (m_needUpdate) {
        onMain(this, [this] {
            if (m_needUpdate) {
                begin();
            }
        });
    } else if (m_runsUnderWay == 0) {
        Q_EMIT settled();
    }
}

QStringList PackageStatuses::takeOver(const StatusResult &result, bool all)
{
    QStringList changed;
    for (auto status = result.statuses.cbegin(); status != result.statuses.cend(); ++status) {
        if (PackageStatus &known = m_statuses[status.key()]; known != status.value()) {
            known = status.value();
            changed.append(status.key());
        }
    }
    if (all) {
        inBackground([freed = std::exchange(m_known, result.known)] {});
        return changed;
    }
    for (auto target = result.known.cbegin(); target != result.known.cend(); ++target) {
        m_known[target.key()].insert(target.value());
    }
    return changed;
}

} // namespace brevok
