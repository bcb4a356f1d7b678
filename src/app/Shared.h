// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/BrevokAlertQueue.h"
#include "app/BrevokAppDelegate.h"
#include "app/ConvergeNotices.h"
#include "app/NetworkReturn.h"
#include "app/OnlyCopy.h"
#include "app/StateTakeOver.h"
#include "catalogue/BrevokPackages.h"
#include "control/ControlService.h"
#include "control/DesktopActivation.h"
#include "install/BrevokAppInstaller.h"
#include "install/Converger.h"
#include "install/InstallFlow.h"
#include "install/UpdateRun.h"
#include "platform/StorageWatch.h"
#include "reporting/BrevokUsageReporter.h"
#include "reporting/BugReporter.h"
#include "service/BrevokSession.h"
#include "service/Connectivity.h"
#include "service/HttpServiceClient.h"
#include "service/NetworkFactory.h"
#include "targets/BrevokTargetApps.h"
#include "updates/BrevokSelfUpdater.h"

#include <optional>

namespace brevok {

/// Everything that start-up builds, in the order of building; it goes in the reverse order.
struct Shared {
    /// Builds everything from the network on, which needs the stores and the alerts.
    void compose(const BrevokAppDelegate::Environment &with);

    std::optional<BrevokAlertQueue> alerts;
    std::optional<ControlService> control;
    std::optional<DesktopActivation> activation;
    std::optional<OnlyCopy> onlyCopy;
    std::optional<BrevokUsageReporter> usageReporter;
    std::optional<StorageWatch> storage;
    std::optional<StateTakeOver> takeOver;
    std::optional<NetworkFactory> network;
    std::optional<Connectivity> connectivity;
    std::optional<NetworkReturn> networkReturn;
    std::optional<HttpServiceClient> service;
    std::optional<BrevokSelfUpdater> updater;
    std::optional<BrevokTargetApps> targets;
    std::optional<BrevokSession> session;
    std::optional<BrevokPlugins> plugins;
    std::optional<BrevokPackages> packages;
    std::optional<BrevokAppInstaller> installer;
    std::optional<InstallFlow> flow;
    std::optional<UpdateRun> updates;
    std::optional<Converger> converger;
    std::optional<ConvergeNotices> convergeNotices; ///< where there is somebody to read them
    std::optional<BugReporter> bugReporter;
};

} // namespace brevok
