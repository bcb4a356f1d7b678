// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"
#include "platform/RunningApplications.h"

#include <QStringList>

#include <optional>

namespace brevok {

// Questions to a list of running applications (this process is never in it). Names are compared exactly,
// paths by their first characters as they stand.

/// Whether an application with that localized name runs.
[[nodiscard]] bool isAppRunning(const QList<RunningApplication> &running, const QString &name);

/// Whether an application with one of the names runs.
[[nodiscard]] bool isAnyAppRunning(const QList<RunningApplication> &running, const QStringList &names);

/// The first application with one of the names whose bundle path begins with @p targetPath.
[[nodiscard]] std::optional<RunningApplication> getRunningApp(
    const QList<RunningApplication> &running, const QStringList &names, const QString &targetPath);

/// The applications with one of the names that lie under the folder of a target's application. One that lies
/// under the folders of two targets is there twice.
[[nodiscard]] QList<RunningApplication> getRunningApps(
    const QList<RunningApplication> &running, const QStringList &withNames, const QList<Record> &forTargets);

} // namespace brevok
