// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/Platform.h"

#include "platform/linux/files/FileSettingsStore.h"
#include "platform/linux/files/InotifyApplicationSearch.h"
#include "platform/linux/files/LinuxFileOperations.h"
#include "platform/linux/files/SqliteStateStore.h"
#include "platform/linux/network/RouteTableLookup.h"
#include "platform/linux/privileges/BusHelperTool.h"
#include "platform/linux/privileges/PackageKitInstaller.h"
#include "platform/linux/session/AutostartLoginItems.h"
#include "platform/linux/session/DBusNotifications.h"
#include "platform/linux/session/DesktopNotifications.h"
#include "platform/linux/session/ProcRunningApplications.h"
#include "platform/linux/session/SystemdTimerRuns.h"
#include "platform/linux/session/XdgUrlOpener.h"
#include "platform/PropertyLists.h"
#include "platform/SessionBus.h"
#include "platform/StandardFolders.h"

#include <QDir>

namespace brevok {

namespace {

/// Has @p part go on with each new connection to the bus.
template <typename Part> std::unique_ptr<Part> followingBus(SessionBus &bus, std::unique_ptr<Part> part)
{
    QObject::connect(
        &bus, &SessionBus::returned, &bus, [&bus, part = part.get()] { part->use(bus.connection()); });
    return part;
}

} // namespace

Platform::Platform() = default;
Platform::~Platform() = default;
Platform::Platform(Platform &&other) noexcept = default;

Platform createPlatform(
    const MainBundle &mainBundle, const StandardFolders &folders, const QStringList &applicationFolders)
{
    Platform platform;
    platform.bus = std::make_unique<SessionBus>();
    SessionBus &bus = *platform.bus;
    platform.runningApplications = std::make_unique<ProcRunningApplications>(mainBundle);
    platform.loginItems = std::make_unique<AutostartLoginItems>(
        folders.autostart + u'/' + mainBundle.identifier() + QStringLiteral(".desktop"),
        mainBundle.displayNames().constLast());
    platform.notifications = followingBus(bus, std::make_unique<DBusNotifications>(bus.connection()));
    platform.userNotifications = followingBus(bus,
        std::make_unique<DesktopNotifications>(
            bus.connection(), mainBundle.identifier(), mainBundle.displayNames().constLast()));
    platform.timerRuns = followingBus(bus,
        std::make_unique<SystemdTimerRuns>(
            bus.connection(), QStringLiteral("tolvane-brevok-converge.timer")));
    platform.urlOpener = std::make_unique<XdgUrlOpener>();
    platform.routeLookup = std::make_unique<RouteTableLookup>();
    platform.applicationSearch = std::make_unique<InotifyApplicationSearch>(applicationFolders);
    platform.fileOperations = std::make_unique<LinuxFileOperations>();
    platform.helperTool = std::make_unique<BusHelperTool>();
    platform.softwareInstaller = std::make_unique<PackageKitInstaller>();
    return platform;
}

void openStores(Platform &platform, const StandardFolders &folders)
{
    platform.settings = std::make_unique<FileSettingsStore>(folders.settingsFile);
    platform.state = std::make_unique<SqliteStateStore>(folders.stateFile());
}

QStringList defaultApplicationFolders()
{
    return {QStringLiteral("/Applications"), QDir::homePath() + QStringLiteral("/Applications"),
        QStringLiteral("/opt")};
}

} // namespace brevok
