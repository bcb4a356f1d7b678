// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/StatusRun.h"

#include <QObject>

namespace brevok {

class BrevokPlugins;
class PackageRecords;

/// The statuses of the packages: when they are calculated, and what came of it. Main thread; a calculation
/// runs in the background on values, one at a time.
class PackageStatuses final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PackageStatuses)

public:
    PackageStatuses(const PackageRecords &packages, const BrevokPlugins &plugins,
        const BrevokTargetApps &targets, QObject *parent);
    ~PackageStatuses() override;

    /// Prefix to status. A prefix without an entry counts as MissingData.
    [[nodiscard]] const QHash<QString, PackageStatus> &all() const { return m_statuses; }
    [[nodiscard]] bool updating() const { return m_updating; }
    [[nodiscard]] bool needUpdate() const { return m_needUpdate; }
    /// No calculation is under way or wanted; otherwise settled() follows.
    [[nodiscard]] bool isSettled() const { return m_runsUnderWay == 0 && !m_needUpdate; }

    /// Calculates all statuses, or says that this is wanted when the calculation under way has ended.
    void calculate();
    /// The same for the packages with a build of one of these plug-ins: what an install costs then does not
    /// grow with the catalogue.
    void calculateFor(const QStringList &plugins);
    /// Calculates all, if only some were since the last time: what other programs did to the rest shows.
    void calculateRest();
    /// The next calculation need not wait for the one under way.
    void letNextBegin() { m_updating = false; }

Q_SIGNALS:
    /// A calculation ended, and changed the statuses of @p prefixes.
    void calculated(const QStringList &prefixes);
    /// A calculation ended, and no other is wanted.
    void settled();

private:
    void begin();
    [[nodiscard]] StatusInput inputForAll() const;
    [[nodiscard]] StatusInput inputFor(const QSet<QString> &plugins) const;
    void apply(const StatusResult &result, quint64 run, bool all);
    [[nodiscard]] QStringList takeOver(const StatusResult &result, bool all);

    const PackageRecords &m_packages;
    const BrevokPlugins &m_plugins;
    const BrevokTargetApps &m_targets;
    QHash<QString, PackageStatus> m_statuses;
    BundlesOfTargets m_known; ///< from the calculations so far
    QSet<QString> m_wantedPlugins; ///< for the next calculation
    bool m_wantAll = false;
    bool m_restIsOld = false;
    quint64 m_lastRun = 0; ///< number of the calculation begun last
    quint64 m_appliedRun = 0; ///< number of the latest calculation whose result is shown
    int m_runsUnderWay = 0;
    bool m_updating = false;
    bool m_needUpdate = false;
};

} // namespace brevok
