// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/BrevokPlugins.h"
#include "catalogue/PackageIcons.h"
#include "catalogue/PackageStatus.h"

#include <QTimer>

#include <map>
#include <memory>

namespace brevok {

class BrevokTargetApps;
struct StatusMemory;
struct StatusResult;

/// Keys of a package record.
namespace PackageKeys {
inline constexpr QLatin1StringView name("Name");
inline constexpr QLatin1StringView published("Published");
inline constexpr QLatin1StringView version("Version");
inline constexpr QLatin1StringView platform("Platform");
inline constexpr QLatin1StringView icon("Icon");
inline constexpr QLatin1StringView iconPath("IconPath");
inline constexpr QLatin1StringView prefix("Prefix");
inline constexpr QLatin1StringView info("Info");
} // namespace PackageKeys

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
        ImageTest formsImage; ///< looksLikeImage() when there is no better one
    };

    explicit BrevokPackages(Collaborators collaborators, QObject *parent = nullptr);
    ~BrevokPackages() override;

    /// The packages of this process, for the outermost code.
    static BrevokPackages *packages();

    /// The observable property `packages`: the records, by name, case-insensitively.
    [[nodiscard]] QList<Record> packageRecords() const;
    [[nodiscard]] const QHash<QString, PackageIcon> &packagesIcons() const { return m_icons->icons(); }
    /// Prefix to status. A prefix without an entry counts as MissingData.
    [[nodiscard]] const QHash<QString, PackageStatus> &packagesStatus() const { return m_status; }
    /// The packages that the last notification counted as needing an update.
    [[nodiscard]] int updates() const { return m_updates; }
    [[nodiscard]] bool updating() const { return m_updating; }
    [[nodiscard]] bool needUpdate() const { return m_needUpdate; }
    /// Active while another check is scheduled.
    [[nodiscard]] QTimer *updateTimer() const;
    /// Active between notifyPackageStatusesLazily() and the notification.
    [[nodiscard]] const QTimer *statusTimer() const { return &m_statusTimer; }

    /// Fetches what is missing and requests the list; called once, when the definitions have begun to.
    void start();

    /// @p automatically is false for the user's own check, which ends with the result window. @p ended tells
    /// the end of the request that this call makes, whatever other requests are under way.
    void checkForUpdates(bool automatically = true, const std::function<void(bool ok)> &ended = {});
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

private:
    /// By name, case-insensitively; names that differ in case only are two names.
    struct ByName {
        bool operator()(const QString &a, const QString &b) const;
    };

    void load();
    void loadStoredIcons();
    void observe();
    void enter(const Record &package, const QString &name);
    void iconCached(const QString &name, const QString &path);
    void noteChange(const QString &name);
    void save();
    void saveEverything();
    void statusesCalculated(const StatusResult &result, quint64 run);
    void showUpdateResult(const QStringList &newNames);

    StateStore &m_state;
    BrevokPlugins &m_plugins;
    BrevokTargetApps &m_targets;
    ListRefresh *m_refresh;
    PackageIcons *m_icons;
    std::map<QString, Record, ByName> m_packages;
    /// What the store holds of the records that changed since they were put there; nothing: no entry.
    QHash<QString, std::optional<Record>> m_unsaved;
    QStringList m_notified; ///< names last counted as needing an update
    QHash<QString, PackageStatus> m_status;
    std::unique_ptr<StatusMemory> m_known; ///< from the latest calculation
    QTimer m_statusTimer;
    quint64 m_lastRun = 0; ///< number of the calculation begun last
    quint64 m_appliedRun = 0; ///< number of the latest calculation whose result is shown
    int m_runsUnderWay = 0;
    int m_updates = 0;
    bool m_showNotifications = true;
    bool m_updating = false;
    bool m_needUpdate = false;
};

} // namespace brevok
