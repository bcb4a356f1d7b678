// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

#include <memory>

namespace brevok {

class ApplicationSearch;
class DistributedNotifications;
class FileOperations;
class HelperTool;
class LoginItems;
class MainBundle;
class RouteLookup;
class RunningApplications;
class SessionBus;
class SettingsStore;
class SoftwareInstaller;
class StateStore;
class TimerRuns;
struct StandardFolders;
class UrlOpener;
class UserNotificationCenter;

/// Every ability of the operating system, ready to be handed to those who need it. Made and destroyed on the
/// main thread; outlives what it was handed to.
struct Platform {
    std::unique_ptr<SessionBus> bus;
    std::unique_ptr<SettingsStore> settings; ///< null until openStores()
    std::unique_ptr<StateStore> state; ///< null until openStores()
    std::unique_ptr<RunningApplications> runningApplications;
    std::unique_ptr<LoginItems> loginItems;
    std::unique_ptr<DistributedNotifications> notifications;
    std::unique_ptr<UserNotificationCenter> userNotifications;
    std::unique_ptr<TimerRuns> timerRuns; ///< of the nightly work
    std::unique_ptr<UrlOpener> urlOpener;
    std::unique_ptr<RouteLookup> routeLookup;
    std::unique_ptr<ApplicationSearch> applicationSearch;
    std::unique_ptr<FileOperations> fileOperations;
    std::unique_ptr<HelperTool> helperTool;
    std::unique_ptr<SoftwareInstaller> softwareInstaller;

    Platform();
    ~Platform();
    Platform(Platform &&other) noexcept;
    Platform &operator=(Platform &&other) = delete;
    Platform(const Platform &other) = delete;
    Platform &operator=(const Platform &other) = delete;
};

/// This system's abilities. No file of the user's is touched. Host applications are searched for in @p
/// applicationFolders. Needs the QCoreApplication.
[[nodiscard]] Platform createPlatform(
    const MainBundle &mainBundle, const StandardFolders &folders, const QStringList &applicationFolders);

/// Opens what keeps the user's values. Called once, by a copy of the program that stays.
void openStores(Platform &platform, const StandardFolders &folders);

/// Where applications are looked for unless the user names other folders.
[[nodiscard]] QStringList defaultApplicationFolders();

} // namespace brevok
