// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/BrevokPlugins.h"
#include "catalogue/OwnCheck.h"
#include "catalogue/PackageIcons.h"
#include "catalogue/PackageStatus.h"
#include "catalogue/PackageStore.h"

#include <QTimer>

namespace brevok {

class BrevokTargetApps;
class PackageStatuses;

/// The packages that the service publishes, their icons and their status. Main thread; statuses are
/// calculated in the background from snapshots.
class BrevokPackages final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokPackages)

public:
    struct Collaborators {
        StateStore &state;
        ServiceClient &service;
        BrevokAlertQueue &alerts;
        BrevokPlugins &plugins;
        BrevokTargetApps &targets;
        QString dataFolder; ///< where icons are cached
    };

    explicit BrevokPackages(Collaborators collaborators, QObject *parent = nullptr);
    ~BrevokPackages() override;

    /// The packages of this process, for the outermost code.
    static BrevokPackages *packages();

    /// The observable property `packages`: the records, by name, case-insensitively.
    [[nodiscard]] QList<Record> packageRecords() const;
    /// Those with @p prefix, in the same order.
    [[nodiscard]] QList<Record> packagesWithPrefix(const QString &prefix) const;
    [[nodiscard]] const QHash<QString, PackageIcon> &packagesIcons() const { return m_icons->icons(); }
    /// Prefix to status. A prefix without an entry counts as MissingData.
    [[nodiscard]] const QHash<QString, PackageStatus> &packagesStatus() const;
    /// Whether an update waits for this package.
    [[nodiscard]] bool waits(const Record &package) const;
    /// All packages that an update waits for, in the catalogue's order.
    [[nodiscard]] QList<Record> waitingPackages() const;
    /// The packages that the last notification counted as needing an update.
    [[nodiscard]] int updates() const { return m_updates; }
    [[nodiscard]] bool updating() const;
    [[nodiscard]] bool needUpdate() const;
    /// Whether every status is known.
    [[nodiscard]] bool isSettled() const;
    /// Runs @p then when every status is known: at once, or after statusesSettled().
    void whenSettled(QObject *context, const Task &then);
    /// When the last good list came; invalid while none did.
    [[nodiscard]] QDateTime lastUpdate() const { return m_refresh->lastUpdate(); }
    /// Active while another check is scheduled.
    [[nodiscard]] QTimer *updateTimer() const;
    /// Active between notifyPackageStatusesLazily() and the notification.
    [[nodiscard]] const QTimer *statusTimer() const { return &m_statusTimer; }

    /// Loads the stored icons and requests the list. Called once, after BrevokPlugins::start().
    void start();

    /// Requests the list. The user's own check (@p automatically is false) requests that of the plug-ins,
    /// too, and ends with the result window when both came, else with ownCheckFailed(); @p ended is for it
    /// alone.
    void checkForUpdates(bool automatically = true, const OwnCheck::Handler &ended = {});
    /// Requests the list without a window or an alert, while the user's own check may be under way.
    void checkQuietly(const ListRefresh::CheckHandler &ended);
    void updateWithArray(const QJsonArray &list);

    void calculatePackageStatuses();
    void notifyPackageStatusesLazily();
    void notifyPackageStatuses();
    /// The package counts as new when it needs an update the next time.
    void forgetNotified(const QString &name);

Q_SIGNALS:
    void packagesWillChange();
    void packagesChanged();
    void packagesIconsChanged();
    void packagesStatusChanged();
    /// A calculation ended and none is wanted any more.
    void statusesSettled();
    /// Some request of the list ended, with or without a usable list (or could not be made).
    void checkFinished(bool ok);
    /// For the status item.
    void updatesChanged(int updates);
    /// The user's own check began: show the progress window.
    void updateProgressWanted();
    /// The user's own check ended: show the result window with these texts.
    void updateResult(const QString &title, const QString &label);
    /// The user's own check ended without one of its lists: there is no result.
    void ownCheckFailed(const QString &cause);

private:
    [[nodiscard]] ListRefresh::Owner listOwner();
    void load();
    void loadStoredIcons();
    void takeList(const QJsonArray &list, const KeptList &as);
    void enter(const Record &package, const QString &name);
    void iconCached(const QString &name, const QString &path);
    void takeKept();
    void save();
    void saveEverything();
    void statusesCalculated(const QStringList &prefixes);
    void showUpdateResult();

    StateStore &m_state;
    ListRefresh *m_refresh;
    PackageIcons *m_icons;
    PackageStore m_packages;
    PackageStatuses *m_statuses;
    OwnCheck *m_ownCheck;
    QSet<QString> m_notified; ///< names last counted as needing an update
    QSet<QString> m_undecided; ///< names whose need of an update may have changed
    QTimer m_statusTimer;
    int m_updates = 0;
};

} // namespace brevok
