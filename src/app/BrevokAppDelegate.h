// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/AlertPresenter.h"
#include "platform/PropertyLists.h"
#include "platform/StandardFolders.h"
#include "platform/UserNotificationCenter.h"
#include "service/ServiceClient.h"
#include "surfaces/SettingsAccess.h"
#include "surfaces/Surfaces.h"

#include <QObject>
#include <QUrl>

#include <memory>

namespace brevok {

struct Platform;
struct Shared;

/// How long background work, and each store's disk, may take to come to an end when the program ends.
inline constexpr int patienceAtQuitMs = 5000;

/// The application's delegate: starts the program once per user session, composes everything, keeps starting
/// at login in step with the user's login items, and says goodbye to other processes at quit. Main thread.
class BrevokAppDelegate final : public QObject,
                                public SettingsAccess,
                                private PanelKeeper,
                                private UserNotificationCenterDelegate {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokAppDelegate)

public:
    /// What the outermost code hands over. References outlive the delegate.
    struct Environment {
        const MainBundle &bundle;
        Platform &platform;
        AlertPresenter &presenter;
        Surfaces &surfaces;
        StandardFolders folders;
        ServiceConfiguration service;
        QVariantMap lockedSettings{}; ///< what the administrator decides
        QString policyFile{}; ///< of the administrator, for what is read again later
        bool background = false; ///< started by the system: nothing is opened or shown
        bool headless = false; ///< without windows: leaves when a copy with windows starts
    };

    explicit BrevokAppDelegate(Environment environment, QObject *parent = nullptr);
    ~BrevokAppDelegate() override;

    /// The delegate of this process, for the outermost code.
    static BrevokAppDelegate *appDelegate();

    /// Finds out whether this copy stays; if so, builds and shows everything, and only then asks what is to
    /// be asked. Returns at once: some of it may follow when another copy has ended or a question is
    /// answered.
    void applicationDidFinishLaunching();
    /// The user started the running program again, from the desktop's menu: like a click on the status item.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);
    /// Saves, tells other processes, removes the status item. Always true: nothing can refuse.
    bool applicationShouldTerminate();
    /// Ends the program on the next turn of the run loop.
    void terminateSoon();
    /// Ends a program without windows as soon as what it does is done; others stay.
    void handOver();

    void togglePanel();
    /// The panel, made at the first call.
    [[nodiscard]] PanelSurface &panelController();
    /// Null before start-up made it and after termination.
    [[nodiscard]] StatusItemSurface *menubarController() const { return m_menubarController.get(); }

    /// What identifies this copy in the login items.
    [[nodiscard]] QUrl appURL() const;
    [[nodiscard]] bool willStartAtLogin(const QUrl &application) const;
    /// The log tells a failure, and @p waiter whether it came to that.
    void setStartAtLogin(const QUrl &application, bool enabled, StoreWaiter waiter = {});

    [[nodiscard]] QVariant setting(const Setting &setting) const override;
    void setSetting(const Setting &setting, const QVariant &value, StoreWaiter waiter) override;
    [[nodiscard]] bool isLocked(const Setting &setting) const override;

    [[nodiscard]] bool startAtLogin() const { return willStartAtLogin(appURL()); }
    void setStartAtLogin(bool enabled, StoreWaiter waiter = {});
    [[nodiscard]] bool showNotifications() const;
    void setShowNotifications(bool enabled);
    [[nodiscard]] bool checkForUpdates() const;
    void setCheckForUpdates(bool enabled);
    [[nodiscard]] bool autoUpdate() const;
    void setAutoUpdate(bool enabled);
    [[nodiscard]] int logLevel() const;
    void setLogLevel(int level);

Q_SIGNALS:
    void startAtLoginWillChange();
    void startAtLoginChanged();

private:
    void setKeepOpenPanel(bool keepOpen) override;
    /// Always: notices are shown while the application is in front, too.
    [[nodiscard]] bool shouldPresentNotification(const UserNotification &) override { return true; }
    void didActivateNotification(const QString &action) override { carryOut(action); }
    /// What a notice or the desktop's menu asks for.
    void carryOut(const QString &action);
    void updateWaitingPackages();
    void joinBus();
    void finishLaunching();
    void giveWayToTheOtherCopy();
    void openSettings();
    void registerDefaults();
    void tellOfDamage();
    void connectSharedObjects();
    void attachSurfaces();
    void createMenubarController();
    void observeNotices();
    void observeOtherProcesses();
    void terminateSoonWith(int status);
    void leaveWhenDone();
    void leaveWhenIdle();
    /// Whether the bus started this copy, without windows, for those who call on it.
    [[nodiscard]] bool isForCallers() const;

    Environment m_with;
    std::unique_ptr<Shared> m_shared;
    std::unique_ptr<StatusItemSurface> m_menubarController;
    std::unique_ptr<PanelSurface> m_panelController;
};

} // namespace brevok
