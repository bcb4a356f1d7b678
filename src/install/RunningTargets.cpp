// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/RunningTargets.h"

#include "foundation/Paths.h"
#include "targets/BrevokTargetApps.h"

#include <algorithm>

namespace brevok {

bool isAppRunning(const QList<RunningApplication> &running, const QString &name)
{
    return isAnyAppRunning(running, {name});
}

bool isAnyAppRunning(const QList<RunningApplication> &running, const QStringList &names)
{
    return std::any_of(running.cbegin(), running.cend(),
        [&](const RunningApplication &application) { return names.contains(application.localizedName); });
}

std::optional<RunningApplication> getRunningApp(
    const QList<RunningApplication> &running, const QStringList &names, const QString &targetPath)
{
    const auto found =
        std::find_if(running.cbegin(), running.cend(), [&](const RunningApplication &application) {
            return names.contains(application.localizedName) && application.bundlePath.startsWith(targetPath);
        });
    return found == running.cend() ? std::nullopt : std::optional(*found);
}

QList<RunningApplication> getRunningApps(
    const QList<RunningApplication> &running, const QStringList &withNames, const QList<Record> &forTargets)
{
    QList<RunningApplication> result;
    for (const RunningApplication &application : running) {
        if (!withNames.contains(application.localizedName)) {
            continue;
        }
        for (const Record &target : forTargets) {
            const QString folder = deletingLastPathComponent(target.value(TargetKeys::path).toString());
            if (application.bundlePath.startsWith(folder)) {
                result.append(application);
            }
        }
    }
    return result;
}

} // namespace brevok
