// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Tasks.h"
#include "platform/FileState.h"

#include <QHash>
#include <QStringList>

#include <optional>

namespace brevok {

/// A host application, and the folder that its plug-ins go into.
struct HostApplication {
    QString targetPath;
    QString name;
    QString version;
    bool isInCopy = false;
    FolderLook folder;
};

/// What looks at the disk found. What did not answer in time is missing.
struct TargetFindings {
    QHash<QString, FolderLook> folders; ///< by the path that was asked about
    QList<HostApplication> hosts; ///< in the order of the bundles
};

/// The place, for bounded work, of what stands at @p path: an application and the plug-ins beside it are one
/// place, since they are on one disk.
[[nodiscard]] QString placeOf(const QString &path);

/// The host application that stands beside the plug-in folder @p path, an InDesign before an InCopy; nothing
/// when there is none. Reads the disk, which may never answer.
[[nodiscard]] std::optional<HostApplication> hostBeside(const QString &path);

/// Looks at @p folders, and at the application bundles @p bundles for hosts among them. @p cameBack runs, on
/// any thread, when a look that was given up ends after all. Background threads.
[[nodiscard]] TargetFindings lookAtTargets(
    const QStringList &folders, const QStringList &bundles, const Task &cameBack);

} // namespace brevok
