// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>

namespace brevok {

class BrevokAlertQueue;
class BrevokPackages;
class BrevokPlugins;
class BrevokSelfUpdater;
class BrevokSession;
class BrevokTargetApps;
class BugReporter;
class Connectivity;
class InstallFlow;
class MainBundle;
class SessionBus;
class SettingsAccess;
class SettingsStore;
class StorageWatch;
class TimerRuns;
class UpdateRun;
class UrlOpener;

/// The status item in the system's bar, as the application drives it. Main thread.
class StatusItemSurface {
public:
    StatusItemSurface() = default;
    virtual ~StatusItemSurface() = default;
    Q_DISABLE_COPY_MOVE(StatusItemSurface)

    /// How many packages wait for an update; 0 hides the number.
    virtual void setUpdates(int updates) = 0;
    [[nodiscard]] virtual bool hasActiveIcon() const = 0;
    virtual void setHasActiveIcon(bool active) = 0;
};

/// The panel, as the application drives it. Main thread.
class PanelSurface : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PanelSurface)

public:
    explicit PanelSurface(QObject *parent = nullptr);
    ~PanelSurface() override;

    [[nodiscard]] virtual bool hasActivePanel() const = 0;
    virtual void setHasActivePanel(bool active) = 0;
    virtual void openPanel() = 0;
    virtual void setKeepOpenPanel(bool keepOpen) = 0;

Q_SIGNALS:
    void hasActivePanelChanged(bool active);
};

/// What the windows show and drive. Everything outlives them.
struct SurfaceContext {
    const MainBundle &bundle;
    BrevokSession &session;
    BrevokPlugins &plugins;
    BrevokPackages &packages;
    BrevokTargetApps &targets;
    InstallFlow &flow;
    UpdateRun &updates;
    BugReporter &bugReporter;
    BrevokAlertQueue &alerts;
    BrevokSelfUpdater &updater;
    const Connectivity &connectivity;
    SessionBus &bus;
    SettingsAccess &access;
    SettingsStore &settings;
    StorageWatch &storage;
    TimerRuns &timerRuns;
    UrlOpener &urls;
    QUrl serviceUrl; ///< base address of the service and its web pages
    std::function<void()> togglePanel;
    std::function<void()> terminate;
};

/// Windows of the program, made by whoever composes it. Without windows every call is only logged.
class Surfaces {
public:
    Surfaces() = default;
    virtual ~Surfaces() = default;
    Q_DISABLE_COPY_MOVE(Surfaces)

    /// Called once, before anything else here.
    virtual void attach(const SurfaceContext &context) = 0;
    /// Closes every window. Called last, when the status item and the panel are gone.
    virtual void detach() = 0;

    [[nodiscard]] virtual std::unique_ptr<StatusItemSurface> makeStatusItem() = 0;
    [[nodiscard]] virtual std::unique_ptr<PanelSurface> makePanel() = 0;
    /// Brings the preferences to the front, at the page of the targets.
    virtual void showTargetsPreferences() = 0;
    virtual void showUpdateProgress() = 0;
    /// The check that showUpdateProgress() was about ended.
    virtual void hideUpdateProgress() = 0;
    virtual void showUpdateResult(const QString &title, const QString &label) = 0;
};

} // namespace brevok
