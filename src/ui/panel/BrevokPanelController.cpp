// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/BrevokPanelController.h"

#include "alerts/BrevokAlertQueue.h"
#include "catalogue/BrevokPackages.h"
#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "platform/UrlOpener.h"
#include "service/BrevokSession.h"
#include "ui/widgets/PanelStyle.h"
#include "ui/widgets/TemplateImage.h"
#include "ui_BrevokPanel.h"

#include <QApplication>
#include <QPixmapCache>
#include <QScreen>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int headerIconSize = 32;

} // namespace

BrevokPanelController::BrevokPanelController(Collaborators collaborators, QObject *parent)
    : PanelSurface(parent)
    , m_with(std::move(collaborators))
    , m_sight(m_with.statusItem)
    , m_service(m_with.plugins, m_with.packages, m_with.connectivity)
    , m_signedIn(!m_with.session.sessionId().isNull())
{
    connect(
        &m_with.session, &BrevokSession::statusChanged, this, &BrevokPanelController::sessionStatusChanged);
    connect(&m_with.session, &BrevokSession::actionFinished, this, &BrevokPanelController::updateAccountTab);
    connect(&m_with.packages, &BrevokPackages::updatesChanged, this, &BrevokPanelController::updateHeader);
    connect(&m_screens, &ScreenWatch::changed, this, &BrevokPanelController::followScreens);
}

BrevokPanelController::~BrevokPanelController() = default;

void BrevokPanelController::loadWindow()
{
    if (m_window) {
        return;
    }
    m_window = std::make_unique<BrevokPanel>();
    Ui::BrevokPanel &ui = m_window->ui();
    m_accountTab = new PanelAccountTab(ui, m_with.session, m_window.get());
    m_packagesTab = new PanelPackagesTab(ui,
        {m_with.session, m_with.packages, m_with.targets, m_with.flow, m_with.updates, m_with.alerts,
            m_with.urls, m_service},
        m_window.get());
    const auto *notices = new PanelNotices(ui, m_with.storage, m_service, m_window.get());
    connect(notices, &PanelNotices::checkWanted, this, &BrevokPanelController::checkPlugInUpdates);
    makeOptionsMenu();
    connectWindow();
    updateTexts();
    m_accountTab->chooseInitialTab();
    updateAccountTab();
}

void BrevokPanelController::connectWindow()
{
    BrevokPanel *window = m_window.get();
    connect(window, &BrevokPanel::didResignKey, this, &BrevokPanelController::windowDidResignKey);
    connect(window, &BrevokPanel::cancelOperation, this, [this] {
        if (!m_packagesTab->clearSearch()) {
            setHasActivePanel(false);
        }
    });
    connect(window, &BrevokPanel::willClose, this, [this] { setHasActivePanel(false); });
    connect(window, &BrevokPanel::orderedOut, this, &BrevokPanelController::windowOrderedOut);
    connect(window, &BrevokPanel::moveDown, m_packagesTab, &PanelPackagesTab::focusFirst);
    connect(window, &BrevokPanel::typed, m_packagesTab, &PanelPackagesTab::typed);
    connect(m_packagesTab, &PanelPackagesTab::subtitleChanged, this, &BrevokPanelController::updateHeader);
    connect(window, &BrevokPanel::styleChanged, this, &BrevokPanelController::updateTexts);
    connect(m_accountTab, &PanelAccountTab::createAccountWanted, this, &BrevokPanelController::createAccount);
    connect(m_packagesTab, &PanelPackagesTab::signInWanted, this, [this] {
        showAccountTab();
        m_accountTab->focusFirst();
    });
    connect(
        m_packagesTab, &PanelPackagesTab::targetsWanted, this, &BrevokPanelController::showTargetsRequested);
}

void BrevokPanelController::makeOptionsMenu()
{
    using Command = PanelOptionsMenu::Command;
    const QList<Command> commands{
        {u"checkPlugInUpdates"_s, [] { return Texts::tr("Check for Plug-In Updates"); },
            QKeySequence::Refresh,
            [this] {
                checkPlugInUpdates();
            }},
        {u"checkAppUpdate"_s, [] { return Texts::tr("Check for Application Update…"); }, {},
            [this] {
                Q_EMIT checkAppUpdateRequested();
            }},
        {},
        {u"showAccount"_s, [] { return Texts::tr("My Account"); }, {},
            [this] {
                showAccount();
            }},
        {u"showSettings"_s, [] { return Texts::tr("Preferences…"); }, QKeySequence(u"Ctrl+,"_s),
            [this] {
                Q_EMIT showSettingsRequested();
            }},
        {u"flushBundleCache"_s, [] { return Texts::tr("Reload Icons"); }, {},
            [this] {
                flushBundleCache();
            }},
        {},
        {u"showHelpPage"_s, [] { return Texts::tr("Help"); }, QKeySequence::HelpContents,
            [this] {
                showHelpPage();
            }},
        {u"showBugReporter"_s, [] { return Texts::tr("Report a Bug…"); }, {},
            [this] {
                Q_EMIT showBugReporterRequested();
            }},
        {u"showAbout"_s, [] { return Texts::tr("About Tolvane Brevok"); }, {},
            [this] {
                Q_EMIT showAboutRequested();
            }},
        {},
        {u"quit"_s, [] { return Texts::tr("Quit…"); }, QKeySequence(u"Ctrl+Q"_s),
            [this] {
                quit();
            }},
    };
    m_optionsMenu = new PanelOptionsMenu(*m_window->ui().popUpButton, commands, m_window.get());
}

void BrevokPanelController::setActive(bool active)
{
    if (active != m_hasActivePanel) {
        m_hasActivePanel = active;
        Q_EMIT hasActivePanelChanged(active);
    }
}

void BrevokPanelController::setHasActivePanel(bool active)
{
    if (active == m_hasActivePanel) {
        return;
    }
    if (active && m_closedByFocusLoss && m_window->isFading()) {
        // The click on the item took the focus first, and with it the panel: it was meant to close it.
        Q_EMIT hasActivePanelChanged(false);
        return;
    }
    if (active) {
        openPanel();
        return;
    }
    setActive(false);
    m_closedByFocusLoss = false;
    if (!m_keepOpenPanel) {
        closePanel();
    }
}

void BrevokPanelController::openPanel()
{
    loadWindow();
    Q_EMIT windowsToFrontRequested();
    setActive(true);
    m_closedByFocusLoss = false;
    const PanelPlace where = place();
    const Qt::KeyboardModifiers held = QGuiApplication::queryKeyboardModifiers();
    if (logsOpening(held)) {
        logLine(u"Icon is at %1\n\tMenu is on screen %2\n\tWill be animated to %3"_s.arg(
            rectText(where.item), rectText(statusScreen()->geometry()), rectText(where.panel)));
    }
    updateHeader();
    m_packagesTab->setOnScreen(true);
    m_window->orderFront(where, openDuration(held));
    if (m_accountTab->selectedTab() == PanelTab::Account) {
        m_accountTab->focusFirst();
    } else {
        m_window->setFocus(); // no control before the user chooses one
    }
}

void BrevokPanelController::closePanel()
{
    if (m_window && m_window->isVisible()) {
        m_window->fadeOut();
    }
}

void BrevokPanelController::setKeepOpenPanel(bool keepOpen)
{
    m_keepOpenPanel = keepOpen;
    // An alert took the focus of a panel that stayed: from now on it can be closed again.
    if (!keepOpen && m_window && m_window->isVisible() && !m_window->isFading()) {
        setActive(true);
        m_window->awaitFocus();
    }
}

void BrevokPanelController::followScreens()
{
    if (!m_window || !m_window->isVisible() || m_window->isFading() || m_sight.screen() == nullptr) {
        return;
    }
    // Where only the tray has gone, the panel stays.
    const QScreen *on = QGuiApplication::screenAt(m_window->geometry().center());
    if (m_sight.frame() || on == nullptr || !on->availableGeometry().contains(m_window->geometry())) {
        m_window->setPlace(place());
    }
}

void BrevokPanelController::windowDidResignKey()
{
    if (m_window->isVisible() && !m_window->isFading() && !m_window->hasSheets()) {
        setHasActivePanel(false);
        m_closedByFocusLoss = m_window->isFading();
    }
}

void BrevokPanelController::windowOrderedOut()
{
    m_closedByFocusLoss = false;
    m_packagesTab->setOnScreen(false);
    if (!m_signedIn && m_accountTab->selectedTab() == PanelTab::Packages) {
        updateAccountTab(); // the tab had to wait for the panel to be closed
    }
}

void BrevokPanelController::sessionStatusChanged()
{
    const bool signedIn = !m_with.session.sessionId().isNull();
    if (signedIn != m_signedIn) {
        m_signedIn = signedIn;
        m_service.forget();
    }
    updateAccountTab();
}

void BrevokPanelController::updateAccountTab()
{
    if (m_window) {
        const PanelTab before = m_accountTab->selectedTab();
        m_accountTab->updateAccountTab(m_hasActivePanel);
        updateHeader();
        m_packagesTab->sessionChanged();
        m_packagesTab->updateNotice();
        if (before == PanelTab::Account && m_accountTab->selectedTab() == PanelTab::Packages) {
            m_window->setFocus();
        }
    }
}

void BrevokPanelController::updatePackagesList()
{
    if (m_window) {
        m_packagesTab->updatePackagesList();
    }
}

void BrevokPanelController::showAccountTab()
{
    loadWindow();
    m_accountTab->showAccountTab();
}

void BrevokPanelController::showPackagesTab()
{
    loadWindow();
    m_accountTab->showPackagesTab();
}

void BrevokPanelController::updateHeader()
{
    if (m_window) {
        m_window->ui().subtitleLabel->setText(m_packagesTab->subtitle());
    }
}

void BrevokPanelController::updateTexts()
{
    Ui::BrevokPanel &ui = m_window->ui();
    m_window->setWindowTitle(Texts::tr("Tolvane Brevok"));
    ui.icon->setPixmap(drawnIcon(u"PanelIcon"_s)
                           .pixmap(QSize(headerIconSize, headerIconSize), m_window->devicePixelRatioF()));
    const QFont secondary = PanelStyle::secondaryFont();
    ui.titleLabel->setFonts(PanelStyle::headingFont(15), secondary);
    ui.titleLabel->setText(Texts::tr("Tolvane Brevok"));
    ui.subtitleLabel->setFonts(secondary, secondary);
    m_accountTab->updateTexts();
    m_packagesTab->updateFonts();
    m_optionsMenu->updateTexts();
    updateHeader();
}

void BrevokPanelController::signIn()
{
    loadWindow();
    m_accountTab->signIn();
}

void BrevokPanelController::openServicePage(const QString &path)
{
    QUrl url = m_with.serviceUrl;
    url.setPath(url.path() + path);
    m_with.urls.open(url);
}

void BrevokPanelController::createAccount()
{
    openServicePage(u"/account/register"_s);
}

void BrevokPanelController::showAccount()
{
    openServicePage(u"/account/signin"_s);
}

void BrevokPanelController::showHelpPage()
{
    m_with.urls.open(m_with.helpUrl);
}

void BrevokPanelController::checkPlugInUpdates()
{
    m_with.packages.checkForUpdates(false);
}

void BrevokPanelController::quit()
{
    const auto terminate = [this] {
        Q_EMIT terminateRequested();
    };
    if (!onMainThread()) {
        logLine(u"Quit alert called from background thread."_s);
        onMain(this, terminate);
        return;
    }
    const std::unique_ptr<BrevokAlert> alert = BrevokAlert::create(m_with.alerts.presenter());
    alert->content = {
        .messageText = Texts::tr("Are you sure you want to quit"),
        .informativeText = Texts::tr("Tolvane Brevok needs to be running to keep the Plug-Ins active."),
        .style = AlertStyle::Informational, // the style numbered 1
        .icon = {},
        // The other way round than usual, so that an accidental Return does not quit.
        .buttons = {{.title = Texts::tr("Quit"), .key = AlertKey::Escape},
            {.title = Texts::tr("Cancel"), .key = AlertKey::Return}},
        .accessory = {},
    };
    if (m_with.alerts.runModal(*alert) == alertFirstButton) {
        onMain(this, terminate);
    }
}

void BrevokPanelController::flushBundleCache()
{
    QPixmapCache::clear();
    if (m_window) {
        m_packagesTab->reloadIcons();
        updateTexts();
    }
}

} // namespace brevok
