// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/BrevokAppDelegate.h"

#include "app/EarlierKeys.h"
#include "app/Shared.h"
#include "foundation/Log.h"
#include "foundation/Texts.h"
#include "platform/DistributedNotifications.h"
#include "platform/LogFile.h"
#include "platform/Platform.h"
#include "platform/RouteLookup.h"
#include "platform/SessionBus.h"
#include "platform/SettingsStore.h"
#include "platform/TimerRuns.h"

#include <QTimer>

#include <cstdlib>
#include <tuple>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

BrevokAppDelegate *theDelegate = nullptr;

const QString openPanelObject = u"openPanel"_s;
const QString willTerminateObject = u"willTerminate"_s;

constexpr int networkReturnSpreadMs = 60000;

} // namespace

BrevokAppDelegate::BrevokAppDelegate(Environment environment, QObject *parent)
    : QObject(parent)
    , m_with(std::move(environment))
    , m_shared(std::make_unique<Shared>())
{
    if (theDelegate == nullptr) {
        theDelegate = this;
    }
}

BrevokAppDelegate::~BrevokAppDelegate()
{
    m_menubarController.reset();
    m_panelController.reset();
    m_with.surfaces.detach();
    m_with.platform.userNotifications->setDelegate(nullptr);
    if (theDelegate == this) {
        theDelegate = nullptr;
    }
}

BrevokAppDelegate *BrevokAppDelegate::appDelegate()
{
    return theDelegate;
}

void BrevokAppDelegate::applicationDidFinishLaunching()
{
    m_shared->alerts.emplace(m_with.presenter, static_cast<PanelKeeper &>(*this));
    m_shared->control.emplace();
    connect(&*m_shared->control, &ControlService::quitRequested, this, &BrevokAppDelegate::terminateSoon);
    m_shared->activation.emplace();
    joinBus();
    connect(m_with.platform.bus.get(), &SessionBus::returned, this, &BrevokAppDelegate::joinBus);
    connect(m_with.platform.bus.get(), &SessionBus::gone, this, [this] {
        if (isForCallers()) {
            logLine(u"Nobody can call this copy any more: it ends when its work is done."_s);
            leaveWhenDone();
        }
    });
    m_shared->onlyCopy.emplace(
        OnlyCopy::Collaborators{*m_with.platform.bus, *m_with.platform.runningApplications, m_with.bundle,
            m_with.folders, m_with.headless, isForCallers()});
    m_shared->onlyCopy->decide([this](bool stays) { stays ? finishLaunching() : giveWayToTheOtherCopy(); });
}

// Before the name is asked for: whoever finds the name finds what it stands for.
void BrevokAppDelegate::joinBus()
{
    const QDBusConnection &bus = m_with.platform.bus->connection();
    m_shared->control->publish(bus);
    m_shared->activation->publish(bus);
    if (m_menubarController) {
        observeNotices();
    }
}

void BrevokAppDelegate::finishLaunching()
{
    m_shared->usageReporter.emplace();
    openSettings();
    registerDefaults();
    moveKeysOfEarlierVersions(*m_with.platform.settings);
    tellOfDamage();
    m_shared->storage.emplace(*m_with.platform.settings, *m_with.platform.state);
    m_shared->takeOver.emplace(*m_with.platform.settings, *m_with.platform.state);
    brevok::setLogLevel(logLevel());
    moveLongLogAside(m_with.folders.logFile());
    redirectStandardError(m_with.folders.logFile());
    m_shared->compose(m_with);
    connectSharedObjects();
    attachSurfaces();
    setStartAtLogin(m_with.platform.settings->boolValue(SettingKeys::startAtLogin));
    createMenubarController();
    observeNotices();
    observeOtherProcesses();
    m_shared->plugins->start([this] { m_shared->packages->start(); });
    m_shared->activation->setHandler([this](const QString &action) { carryOut(action); });
}

void BrevokAppDelegate::giveWayToTheOtherCopy()
{
    if (m_with.background) {
        // The bus would let its caller wait for a copy that ended well.
        terminateSoonWith(isForCallers() ? EXIT_FAILURE : EXIT_SUCCESS);
        return;
    }
    m_with.platform.notifications->post(m_with.bundle.identifier(), openPanelObject);
    const std::unique_ptr<BrevokAlert> alert = BrevokAlert::create(m_with.presenter);
    alert->content = {
        .messageText = Texts::tr("Another copy of Tolvane Brevok application is already running."),
        .informativeText =
            Texts::tr("Only one copy can be run at a time. Quit running Tolvane Brevok to run this "
                      "copy of Tolvane Brevok application."),
        .style = AlertStyle::Informational,
        .icon = {},
        .buttons = {{.title = Texts::tr("OK")}},
        .accessory = {},
    };
    m_shared->alerts->runModal(*alert);
    terminateSoon();
}

void BrevokAppDelegate::openSettings()
{
    openStores(m_with.platform, m_with.folders);
    m_with.platform.settings->lock(m_with.lockedSettings);
}

void BrevokAppDelegate::registerDefaults()
{
    const QString path = m_with.bundle.resourcePath(u"Brevok-Defaults"_s, u"plist"_s);
    if (const std::optional<Record> defaults = readPropertyList(path)) {
        m_with.platform.settings->registerDefaults(defaults->toVariantMap());
    }
    connect(m_with.platform.settings.get(), &SettingsStore::changed, this, [this](const QString &key) {
        if (key == SettingKeys::logLevel) {
            brevok::setLogLevel(logLevel());
        }
    });
}

void BrevokAppDelegate::connectSharedObjects()
{
    Shared &shared = *m_shared;
    // Who has no list yet is not kept waiting.
    shared.networkReturn.emplace(*m_with.platform.routeLookup, *shared.connectivity,
        [&shared] { return shared.plugins->lastUpdate().isValid() ? networkReturnSpreadMs : 0; });
    connect(&*shared.networkReturn, &NetworkReturn::returned, this, [&shared] {
        if (!shared.plugins->asksAboutUnfinishedActions()) { // then the first check is still to come
            shared.plugins->checkForUpdates();
            shared.packages->checkForUpdates();
        }
    });
    connect(&*shared.targets, &BrevokTargetApps::reviewWanted, this,
        [this] { m_with.surfaces.showTargetsPreferences(); });
    // A volume may have brought some, or no longer hide them.
    connect(&*shared.targets, &BrevokTargetApps::looked, this,
        [&shared] { shared.installer->clearLeftovers(shared.targets->allRecords().keys()); });
    connect(&*shared.packages, &BrevokPackages::updatesChanged, this, [this](int updates) {
        if (m_menubarController) {
            m_menubarController->setUpdates(updates);
        }
    });
    connect(&*shared.packages, &BrevokPackages::updateProgressWanted, this,
        [this] { m_with.surfaces.showUpdateProgress(); });
    connect(&*shared.packages, &BrevokPackages::ownCheckFailed, this,
        [this] { m_with.surfaces.hideUpdateProgress(); });
    connect(&*shared.packages, &BrevokPackages::updateResult, this,
        [this](
            const QString &title, const QString &label) { m_with.surfaces.showUpdateResult(title, label); });
    shared.control->setCollaborators({
        .session = *shared.session,
        .plugins = *shared.plugins,
        .packages = *shared.packages,
        .targets = *shared.targets,
        .flow = *shared.flow,
        .updates = *shared.updates,
        .state = *m_with.platform.state,
        .settings = *this,
        .storage = *shared.storage,
        .helperIsUsed = [this] { return m_shared->installer->valid(); },
        .bugReporter = *shared.bugReporter,
        .usageReporter = *shared.usageReporter,
        .converger = *shared.converger,
    });
    connect(&*shared.control, &ControlService::openPanelRequested, this,
        [this] { panelController().openPanel(); });
}

void BrevokAppDelegate::attachSurfaces()
{
    Shared &shared = *m_shared;
    m_with.surfaces.attach({
        .bundle = m_with.bundle,
        .session = *shared.session,
        .plugins = *shared.plugins,
        .packages = *shared.packages,
        .targets = *shared.targets,
        .flow = *shared.flow,
        .updates = *shared.updates,
        .bugReporter = *shared.bugReporter,
        .alerts = *shared.alerts,
        .updater = *shared.updater,
        .connectivity = *shared.connectivity,
        .bus = *m_with.platform.bus,
        .access = *this,
        .settings = *m_with.platform.settings,
        .storage = *shared.storage,
        .timerRuns = *m_with.platform.timerRuns,
        .urls = *m_with.platform.urlOpener,
        .serviceUrl = m_with.service.baseUrl,
        .togglePanel = [this] { togglePanel(); },
        .terminate = [this] { terminateSoon(); },
    });
}

void BrevokAppDelegate::createMenubarController()
{
    m_menubarController = m_with.surfaces.makeStatusItem();
    m_menubarController->setUpdates(m_shared->packages->updates());
}

void BrevokAppDelegate::observeNotices()
{
    if (m_with.platform.userNotifications->exists()) {
        m_with.platform.userNotifications->setDelegate(this);
    }
}

void BrevokAppDelegate::observeOtherProcesses()
{
    PanelSurface &panel = panelController();
    DistributedNotifications &notifications = *m_with.platform.notifications;
    connect(&notifications, &DistributedNotifications::posted, &panel,
        [this, &panel](const QString &name, const QString &object) {
            if (name == m_with.bundle.identifier() && object == openPanelObject) {
                panel.openPanel();
            }
        });
    notifications.observe(m_with.bundle.identifier(), openPanelObject);
}

void BrevokAppDelegate::carryOut(const QString &action)
{
    if (action.isEmpty()) {
        applicationShouldHandleReopen(true);
    } else if (action == ActionNames::update && !m_shared->plugins->asksAboutUnfinishedActions()) {
        updateWaitingPackages();
    } else if (action == ActionNames::open || action == ActionNames::update) {
        panelController().openPanel();
    }
}

void BrevokAppDelegate::updateWaitingPackages()
{
    m_shared->packages->whenSettled(this, [this] { // which it is not when the program has just started
        if (m_shared->session->sessionId().isNull()) {
            panelController().openPanel(); // which asks to sign in
        } else {
            m_shared->updates->start();
        }
    });
}

bool BrevokAppDelegate::applicationShouldHandleReopen(bool)
{
    togglePanel();
    return true;
}

bool BrevokAppDelegate::applicationShouldTerminate()
{
    if (m_with.platform.settings) {
        std::ignore = m_with.platform.settings->finish(patienceAtQuitMs);
    }
    m_with.platform.notifications->post(m_with.bundle.identifier(), willTerminateObject);
    m_menubarController.reset();
    return true;
}

void BrevokAppDelegate::terminateSoon()
{
    terminateSoonWith(EXIT_SUCCESS);
}

void BrevokAppDelegate::terminateSoonWith(int status)
{
    QTimer::singleShot(0, this, [this, status] {
        if (applicationShouldTerminate()) {
            QCoreApplication::exit(status); // unlike quit(), no window is asked whether it agrees
        }
    });
}

void BrevokAppDelegate::handOver()
{
    if (!m_with.headless) {
        return;
    }
    logLine(u"A copy with windows starts: this one ends when its work is done."_s);
    leaveWhenDone();
}

bool BrevokAppDelegate::isForCallers() const
{
    return m_with.headless && m_with.background && SessionBus::startedThisProgram();
}

void BrevokAppDelegate::leaveWhenDone()
{
    connect(&*m_shared->control, &ControlService::becameIdle, this, &BrevokAppDelegate::leaveWhenIdle);
    if (m_shared->flow) {
        connect(&*m_shared->flow, &InstallFlow::becameIdle, this, &BrevokAppDelegate::leaveWhenIdle);
    }
    leaveWhenIdle();
}

// An answer comes after the work that it is about.
void BrevokAppDelegate::leaveWhenIdle()
{
    if (!m_shared->control->isBusy() && !(m_shared->flow && m_shared->flow->isBusy())) {
        terminateSoon();
    }
}

void BrevokAppDelegate::togglePanel()
{
    if (!m_menubarController) {
        return; // before start-up made it or while the program ends
    }
    const bool active = !m_menubarController->hasActiveIcon();
    m_menubarController->setHasActiveIcon(active);
    panelController().setHasActivePanel(active);
}

PanelSurface &BrevokAppDelegate::panelController()
{
    if (!m_panelController) {
        m_panelController = m_with.surfaces.makePanel();
        connect(m_panelController.get(), &PanelSurface::hasActivePanelChanged, this, [this](bool active) {
            if (m_menubarController) {
                m_menubarController->setHasActiveIcon(active);
            }
        });
    }
    return *m_panelController;
}

void BrevokAppDelegate::setKeepOpenPanel(bool keepOpen)
{
    if (m_panelController || m_shared->flow) {
        panelController().setKeepOpenPanel(keepOpen);
    } // else a question of the start-up: there is no panel that could close
}

} // namespace brevok
