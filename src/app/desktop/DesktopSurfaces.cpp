// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/desktop/DesktopSurfaces.h"

#include "platform/SessionBus.h"
#include "platform/UrlOpener.h"
#include "service/BrevokSession.h"
#include "ui/desktop/linux/DesktopColors.h"
#include "ui/panel/BrevokPanelController.h"
#include "ui/preferences/BrevokPreferencesController.h"
#include "ui/statusitem/BrevokMenubarController.h"
#include "ui/statusitem/linux/LinuxStatusBar.h"
#include "ui/widgets/TemplateImage.h"
#include "ui/windows/BrevokBugReporterController.h"
#include "ui/windows/BrevokSoftwareUpdateController.h"
#include "ui/windows/SmallWindows.h"
#include "ui/windows/WebAddressWindow.h"
#include "updates/BrevokSelfUpdater.h"

#include <QApplication>
#include <QDBusConnection>

namespace brevok {

DesktopSurfaces::DesktopSurfaces(AlertPresenter &presenter)
    : m_presenter(presenter)
    , m_bar(std::make_unique<LinuxStatusBar>(QDBusConnection::sessionBus()))
{
}

DesktopSurfaces::~DesktopSurfaces() = default;

void DesktopSurfaces::attach(const SurfaceContext &context)
{
    m_with.emplace(context);
    QObject::connect(&context.bus, &SessionBus::returned, &context.updater, [this] { joinBus(); });
    joinBus(); // it may have returned since this object was made
    QObject::connect(&context.urls, &UrlOpener::failed, &context.updater, [this](const QUrl &url) {
        if (m_with) {
            smallWindows().window<WebAddressWindow>().showAddress(url, QApplication::activeWindow());
        }
    });
    // The window is made when there is something to show, and comes up by itself from then on.
    QObject::connect(&context.updater, &BrevokSelfUpdater::windowWanted, &context.updater, [this] {
        if (m_with && !m_softwareUpdate) {
            makeSoftwareUpdate();
        }
    });
}

void DesktopSurfaces::joinBus()
{
    if (!m_with) {
        return;
    }
    m_bar->use(m_with->bus.connection());
    if (m_colors) {
        m_colors->use(m_with->bus.connection());
    }
}

void DesktopSurfaces::detach()
{
    m_bugReporter.reset();
    m_colors.reset();
    m_softwareUpdate.reset();
    m_preferences.reset();
    m_smallWindows.reset();
    m_with.reset();
}

std::unique_ptr<StatusItemSurface> DesktopSurfaces::makeStatusItem()
{
    auto item = std::make_unique<BrevokMenubarController>(*m_bar);
    QObject::connect(item.get(), &BrevokMenubarController::togglePanelRequested, item.get(),
        [toggle = m_with->togglePanel] { toggle(); });
    m_statusItem = item.get();
    m_colors = std::make_unique<DesktopColors>(m_with->bus.connection());
    return item;
}

std::unique_ptr<PanelSurface> DesktopSurfaces::makePanel()
{
    auto panel = std::make_unique<BrevokPanelController>(BrevokPanelController::Collaborators{
        .session = m_with->session,
        .plugins = m_with->plugins,
        .packages = m_with->packages,
        .targets = m_with->targets,
        .flow = m_with->flow,
        .updates = m_with->updates,
        .alerts = m_with->alerts,
        .connectivity = m_with->connectivity,
        .storage = m_with->storage,
        .urls = m_with->urls,
        .serviceUrl = m_with->serviceUrl,
        .helpUrl = QUrl(QStringLiteral(BREVOK_HELP_URL)),
        .statusItem = [this]() -> const StatusItemPlace * {
            return m_statusItem ? &m_statusItem->statusItem() : nullptr;
        },
    });
    connectPanel(*panel);
    return panel;
}

void DesktopSurfaces::makeSoftwareUpdate()
{
    m_softwareUpdate =
        std::make_unique<BrevokSoftwareUpdateController>(BrevokSoftwareUpdateController::Collaborators{
            .updater = m_with->updater,
            .bundle = m_with->bundle,
            .urls = m_with->urls,
        });
    m_softwareUpdate->showWindow();
}

void DesktopSurfaces::connectPanel(BrevokPanelController &panel)
{
    using Panel = BrevokPanelController;
    QObject::connect(&panel, &Panel::windowsToFrontRequested, &panel, [this] { bringWindowsToFront(); });
    QObject::connect(&panel, &Panel::showSettingsRequested, &panel, [this] { preferences().showWindow(); });
    QObject::connect(&panel, &Panel::showTargetsRequested, &panel, [this] { preferences().showTargets(); });
    QObject::connect(
        &panel, &Panel::showBugReporterRequested, &panel, [this] { bugReporter().showWindow(); });
    QObject::connect(&panel, &Panel::checkAppUpdateRequested, &panel,
        [&updater = m_with->updater] { updater.checkForUpdates(); });
    QObject::connect(&panel, &Panel::showAboutRequested, &panel,
        [this] { smallWindows().aboutController().showWindow(); });
    QObject::connect(
        &panel, &Panel::terminateRequested, &panel, [terminate = m_with->terminate] { terminate(); });
}

void DesktopSurfaces::bringWindowsToFront()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window->isVisible()
            && (window == m_preferences.get() || window == m_bugReporter.get()
                || qobject_cast<BrevokAboutController *>(window) != nullptr)) {
            window->raise();
        }
    }
}

SmallWindows &DesktopSurfaces::smallWindows()
{
    if (!m_smallWindows) {
        useApplicationIcon();
        m_smallWindows = std::make_unique<SmallWindows>(m_with->bundle);
    }
    return *m_smallWindows;
}

BrevokPreferencesController &DesktopSurfaces::preferences()
{
    if (!m_preferences) {
        useApplicationIcon();
        m_preferences =
            std::make_unique<BrevokPreferencesController>(BrevokPreferencesController::Collaborators{
                .session = m_with->session,
                .targets = m_with->targets,
                .access = m_with->access,
                .settings = m_with->settings,
                .presenter = m_presenter,
                .urlOpener = m_with->urls,
                .timerRuns = m_with->timerRuns,
                .service = m_with->serviceUrl,
            });
    }
    return *m_preferences;
}

BrevokBugReporterController &DesktopSurfaces::bugReporter()
{
    if (!m_bugReporter) {
        m_bugReporter =
            std::make_unique<BrevokBugReporterController>(BrevokBugReporterController::Collaborators{
                .reporter = m_with->bugReporter,
                .alerts = m_with->alerts,
                .account =
                    [&session = m_with->session] {
                        return session.sessionId().isEmpty() ? QString() : session.orlecId();
                    },
            });
    }
    return *m_bugReporter;
}

void DesktopSurfaces::showTargetsPreferences()
{
    preferences().showTargets();
}

void DesktopSurfaces::showUpdateProgress()
{
    // The panel in which the user began the check stays below, with what it says of a failed one.
    smallWindows().updateProgressController().showOver(
        qobject_cast<BrevokPanel *>(QApplication::activeWindow()));
}

void DesktopSurfaces::hideUpdateProgress()
{
    if (m_smallWindows) {
        m_smallWindows->updateProgressController().close();
    }
}

void DesktopSurfaces::showUpdateResult(const QString &title, const QString &label)
{
    BrevokUpdateProgressController &progress = smallWindows().updateProgressController();
    QWidget *below = progress.isVisible() ? progress.parentWidget()
                                          : qobject_cast<BrevokPanel *>(QApplication::activeWindow());
    progress.close();
    BrevokUpdateResultController &result = smallWindows().updateResultController();
    result.setTitleString(title);
    result.setLabelString(label);
    result.showOver(below);
}

} // namespace brevok
