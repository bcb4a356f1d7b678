// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"
#include "foundation/Record.h"

#include <QString>
#include <QStringList>

namespace brevok {

/// The folder of the target application that a plug-in path belongs to; empty when it cannot be told.
[[nodiscard]] QString applicationFolder(const QString &pluginPath);
/// The folder of the target that a plug-in path belongs to.
[[nodiscard]] QString targetFolder(const QString &pluginPath);

/// The folder of the workspace file of the target application in @p application.
[[nodiscard]] QString workspaceFolder(const QString &application);
/// The folders in which items of the target at @p target are made and replaced.
[[nodiscard]] QStringList changedFolders(const QString &target);

/// Where the archives of a definition's host version are kept under @p dataPath, and its own archive there.
[[nodiscard]] QString archiveFolder(const QString &dataPath, const Record &definition);
[[nodiscard]] QString archivePath(const QString &dataPath, const Record &definition);

/// An error of the installer's family.
[[nodiscard]] BrevokError installerError(const QString &description);
/// The error for a definition whose name is no plain file name: names come from the service and become parts
/// of paths, so one that could lead elsewhere is refused.
[[nodiscard]] BrevokError nameRefused(const QString &name);

} // namespace brevok
