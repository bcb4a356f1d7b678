// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "surfaces/Surfaces.h"

#include <QPointer>

#include <memory>
#include <optional>

namespace brevok {

class AlertPresenter;
class BrevokBugReporterController;
class BrevokMenubarController;
class BrevokPanelController;
class BrevokPreferencesController;
class BrevokSoftwareUpdateController;
class DesktopColors;
class LinuxStatusBar;
class SmallWindows;

/// The windows of a desktop, each made when it is first needed. Main thread; goes before the application
/// object.
class DesktopSurfaces final : public Surfaces {
public:
    /// @p presenter outlives this object.
    explicit DesktopSurfaces(AlertPresenter &presenter);
    ~DesktopSurfaces() override;

    void attach(const SurfaceContext &context) override;
    void detach() override;
    [[nodiscard]] std::unique_ptr<StatusItemSurface> makeStatusItem() override;
    [[nodiscard]] std::unique_ptr<PanelSurface> makePanel() override;
    void showTargetsPreferences() override;
    void showUpdateProgress() override;
    void hideUpdateProgress() override;
    void showUpdateResult(const QString &title, const QString &label) override;

private:
    [[nodiscard]] SmallWindows &smallWindows();
    [[nodiscard]] BrevokPreferencesController &preferences();
    [[nodiscard]] BrevokBugReporterController &bugReporter();
    void joinBus();
    void connectPanel(BrevokPanelController &panel);
    void bringWindowsToFront();
    void makeSoftwareUpdate();

    AlertPresenter &m_presenter;
    std::optional<SurfaceContext> m_with;
    std::unique_ptr<LinuxStatusBar> m_bar;
    std::unique_ptr<DesktopColors> m_colors;
    QPointer<BrevokMenubarController> m_statusItem;
    std::unique_ptr<SmallWindows> m_smallWindows;
    std::unique_ptr<BrevokSoftwareUpdateController> m_softwareUpdate;
    std::unique_ptr<BrevokPreferencesController> m_preferences;
    std::unique_ptr<BrevokBugReporterController> m_bugReporter;
};

} // namespace brevok
