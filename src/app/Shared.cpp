// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/Shared.h"

#include "app/Policy.h"
#include "foundation/BoundedWork.h"
#include "platform/ApplicationSearch.h"
#include "platform/CurrentUser.h"
#include "platform/FileOperations.h"
#include "platform/HelperTool.h"
#include "platform/PartFiles.h"
#include "platform/Platform.h"
#include "platform/RouteLookup.h"
#include "platform/SettingsStore.h"
#include "platform/SoftwareInstaller.h"

#include <QDateTime>

namespace brevok {

using namespace Qt::StringLiterals;
using Environment = BrevokAppDelegate::Environment;

namespace {

void composeUpdater(Shared &shared, const Environment &with)
{
    const Platform &platform = with.platform;
    shared.updater.emplace(BrevokSelfUpdater::Collaborators{
        .settings = *platform.settings,
        .state = *platform.state,
        .service = *shared.service,
        .installer = *platform.softwareInstaller,
        .source = updateSourceOfBuild(with.service),
        .folder = with.folders.updatesFolder(),
        .version = with.bundle.version(),
        .shownVersion = with.bundle.shortVersion(),
        .systemVersion = systemVersion(),
    });
}

// What killed runs left in the targets and among the archives.
void clearLeftovers(Shared &shared, const QString &folder)
{
    shared.installer->clearLeftovers(shared.targets->allRecords().keys());
    inBackground([folder, now = QDateTime::currentDateTimeUtc()] {
        runBounded(folder, [folder, now](Pulse &) { removePartsOf(folder, now); });
    });
}

void composeInstaller(Shared &shared, const Environment &with)
{
    const Platform &platform = with.platform;
    shared.installer.emplace(BrevokAppInstaller::Collaborators{
        .files = *platform.fileOperations,
        .helper = *platform.helperTool,
        .applications = *platform.runningApplications,
        .state = *platform.state,
        .alerts = *shared.alerts,
        .plugins = *shared.plugins,
        .packages = *shared.packages,
        .workspaceFile = with.bundle.resourcePath(u"Tolvane"_s, u"xml"_s),
        .user = currentUserId(),
    });
    clearLeftovers(shared, with.folders.dataFolder());
    shared.flow.emplace(InstallFlow::Collaborators{*shared.plugins, *shared.packages, *shared.targets,
        *shared.installer, *shared.alerts, with.folders.dataFolder()});
    shared.updates.emplace(*shared.flow, *shared.packages);
    shared.converger.emplace(Converger::Collaborators{
        .session = *shared.session,
        .plugins = *shared.plugins,
        .packages = *shared.packages,
        .flow = *shared.flow,
        .state = *platform.state,
        .readWishes = [file = with.policyFile] { return readWishes(file); },
        .autoUpdate = [&settings =
                              *platform.settings] { return settings.boolValue(SettingKeys::autoUpdate); },
    });
    if (!with.headless) {
        shared.convergeNotices.emplace(ConvergeNotices::Collaborators{*platform.settings, *platform.state,
            *platform.userNotifications, *shared.packages, *shared.converger});
    }
}

void composeReporters(Shared &shared, const Environment &with)
{
    const auto sessionId = [&session = *shared.session] {
        return session.sessionId();
    };
    shared.usageReporter->setCollaborators({.network = *shared.network,
        .targets = *shared.targets,
        .plugins = *shared.plugins,
        .sessionId = sessionId,
        .appVersion = with.bundle.version()});
    shared.bugReporter.emplace(BugReporter::Collaborators{
        .network = *shared.network,
        .connectivity = *shared.connectivity,
        .packages = &*shared.packages,
        .plugins = &*shared.plugins,
        .targets = &*shared.targets,
        .sessionId = sessionId,
        .bundle = with.bundle,
        .folders = with.folders,
    });
}

} // namespace

void Shared::compose(const Environment &with)
{
    const Platform &platform = with.platform;
    network.emplace(with.service);
    connectivity.emplace(*network, *platform.routeLookup);
    service.emplace(
        *network, [this] { return session->sessionId(); },
        [this] { return connectivity->checkNetworkReachability(); });
    composeUpdater(*this, with);
    targets.emplace(*platform.state, *platform.applicationSearch);
    session.emplace(*platform.state, *network, *connectivity, *alerts, *updater);
    plugins.emplace(*platform.state, *service, *alerts);
    packages.emplace(BrevokPackages::Collaborators{
        *platform.state, *service, *alerts, *plugins, *targets, with.folders.dataFolder()});
    composeInstaller(*this, with);
    composeReporters(*this, with);
}

} // namespace brevok
