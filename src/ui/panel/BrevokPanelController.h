// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "surfaces/Surfaces.h"
#include "ui/desktop/ScreenWatch.h"
#include "ui/panel/BrevokPanel.h"
#include "ui/panel/ItemSight.h"
#include "ui/panel/PanelAccountTab.h"
#include "ui/panel/PanelNotices.h"
#include "ui/panel/PanelOptionsMenu.h"
#include "ui/panel/PanelPackagesTab.h"
#include "ui/panel/ServiceWatch.h"

#include <QUrl>

#include <functional>

namespace brevok {

class BrevokAlertQueue;
class StorageWatch;

/// Runs the panel. The controller itself is small and made at start; its window, "BrevokPanel", is made when
/// the panel is first opened. Main thread, but for quit().
class BrevokPanelController final : public PanelSurface {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokPanelController)

public:
    /// All references outlive the controller.
    struct Collaborators {
        BrevokSession &session;
        BrevokPlugins &plugins;
        BrevokPackages &packages;
        BrevokTargetApps &targets;
        InstallFlow &flow;
        UpdateRun &updates;
        BrevokAlertQueue &alerts;
        const Connectivity &connectivity;
        StorageWatch &storage;
        UrlOpener &urls;
        QUrl serviceUrl; ///< whose web pages about the account are opened
        QUrl helpUrl; ///< the maker's help page for this program
        /// Answers `statusItemViewForPanelController`: where the status item is, null while there is none.
        std::function<const StatusItemPlace *()> statusItem;
    };

    explicit BrevokPanelController(Collaborators collaborators, QObject *parent = nullptr);
    ~BrevokPanelController() override;

    [[nodiscard]] bool hasActivePanel() const override { return m_hasActivePanel; }
    void setHasActivePanel(bool active) override;
    void openPanel() override;
    void closePanel();
    void setKeepOpenPanel(bool keepOpen) override;
    [[nodiscard]] bool keepOpenPanel() const { return m_keepOpenPanel; }

    /// Where the panel would open now.
    [[nodiscard]] PanelPlace place() const { return m_sight.panel(); }
    [[nodiscard]] QRect statusRect() const { return place().item; }
    [[nodiscard]] QScreen *statusScreen() const { return m_sight.screen(); }

    /// The window, null before the first opening.
    [[nodiscard]] BrevokPanel *window() const { return m_window.get(); }
    [[nodiscard]] PanelPackagesTab *packagesTab() const { return m_packagesTab; }
    [[nodiscard]] PanelOptionsMenu *optionsMenu() const { return m_optionsMenu; }

    void updateAccountTab();
    void updatePackagesList();
    void showAccountTab();
    void showPackagesTab();

    void signIn();
    void createAccount();
    void showAccount();
    void showHelpPage();
    void checkPlugInUpdates();
    /// Asks, and wishes for the end of the program when the user says so; off the main thread without asking.
    void quit();
    void flushBundleCache();

Q_SIGNALS:
    /// Before the panel shows: the About, preferences and bug-report windows that are open come to the front,
    /// without the keyboard.
    void windowsToFrontRequested();
    void showSettingsRequested();
    void showTargetsRequested();
    void showAboutRequested();
    void showBugReporterRequested();
    void checkAppUpdateRequested();
    void terminateRequested();

private:
    void loadWindow();
    void connectWindow();
    void makeOptionsMenu();
    void setActive(bool active);
    void windowDidResignKey();
    void windowOrderedOut();
    void sessionStatusChanged();
    void followScreens();
    void updateTexts();
    void updateHeader();
    void openServicePage(const QString &path);

    Collaborators m_with;
    ItemSight m_sight;
    ServiceWatch m_service;
    ScreenWatch m_screens;
    std::unique_ptr<BrevokPanel> m_window;
    PanelAccountTab *m_accountTab = nullptr;
    PanelPackagesTab *m_packagesTab = nullptr;
    PanelOptionsMenu *m_optionsMenu = nullptr;
    bool m_hasActivePanel = false;
    bool m_keepOpenPanel = false;
    bool m_closedByFocusLoss = false;
    bool m_signedIn = false;
};

} // namespace brevok
