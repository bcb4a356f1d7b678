// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileState.h"
#include "targets/TargetLook.h"

#include <functional>
#include <optional>

class QObject;

namespace brevok {

class BrevokTargetApps;

/// What the disk says of a folder that a person chose for a target.
struct ChosenFolder {
    std::optional<FolderLook> look; ///< nothing when it does not answer
    std::optional<HostApplication> host; ///< beside it
    bool passes = false; ///< the test of a Plug-Ins folder
};

using ChosenFolderDone = std::function<void(const ChosenFolder &)>;

// The disk is asked in the background; @p done runs on the main thread, unless @p context is gone by then.

/// Looks at @p path and for the host application beside it.
void readChosenFolder(
    BrevokTargetApps &targets, const QString &path, QObject *context, ChosenFolderDone done);
/// The same with the test, which may take long.
void testChosenFolder(
    BrevokTargetApps &targets, const QString &path, QObject *context, ChosenFolderDone done);

/// Finds the first of @p folders that is one; an empty text when none of them answers soon.
void findFolder(const QStringList &folders, QObject *context, std::function<void(const QString &)> done);

} // namespace brevok
