// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "install/HelperAccess.h"
#include "install/InstallOutcome.h"
#include "install/RemovalRule.h"
#include "platform/RunningApplications.h"

namespace brevok {

// The part of carrying out a command that asks and changes files: values in, values out. Background only.

/// What became of one command, or of all commands of one definition.
struct CommandResult {
    /// What the failure alert shows: errors handed back by calls that answered yes, and targets whose disk
    /// did not answer.
    QList<BrevokError> errors{};
    QList<PluginOutcome> entries{};
    bool archiveIsBad = false; ///< it is to blame for a failure, and useless

    CommandResult &operator+=(const CommandResult &other);
};

/// One command and what carrying it out needs to know.
struct CommandTask {
    QString plugin{}; ///< name
    QString pluginPath{};
    QString archive{}; ///< empty: a removal
    QByteArray checksum{}; ///< of the archive; empty when none is known
    QString workspaceFile{}; ///< the resource that goes beside every target
    quint32 user = 0; ///< numeric id that installed files belong to

    [[nodiscard]] bool isRemoval() const { return archive.isEmpty(); }
    /// An entry that says why the plug-in is not at its target, or still is.
    [[nodiscard]] PluginOutcome entry(PluginOutcome::End end, const QString &reason) const;
};

/// Who may change files.
struct CommandTools {
    HelperAccess access;
    std::shared_ptr<InstallerOperations> helper{}; ///< null as long as nobody needed it

    [[nodiscard]] InstallerOperations &forPath(const QString &path) const;
};

/// Whether any of @p tasks wants what this user may not do himself. A target whose disk keeps silent wants
/// nothing.
[[nodiscard]] bool helperIsNeeded(const QList<CommandTask> &tasks, const HelperAccess &access);

/// What can be told of a command before anything is changed.
struct CommandLook {
    CommandResult ended{}; ///< without an entry or an error the command can be carried out
    bool isThere = false; ///< something stands at the plug-in path
    std::optional<RunningApplication> running{}; ///< under the target application's folder
};
[[nodiscard]] CommandLook lookAtTask(
    const CommandTask &task, const CommandTools &tools, RunningApplications &applications);
/// What became of the command without being carried out; nothing when it is to be.
[[nodiscard]] std::optional<CommandResult> endedBefore(
    const CommandTask &task, const CommandLook &look, bool skipRunningTargets);
/// What would become of the commands, as far as that can be told. Changes nothing.
[[nodiscard]] QList<PluginOutcome> foresee(
    const QList<CommandTask> &tasks, const HelperAccess &access, RunningApplications &applications);

/// Puts the workspace file and the plug-in in their places.
[[nodiscard]] CommandResult carryOutInstall(const CommandTask &task, const CommandTools &tools);
/// Removes the plug-in, unless another package needs it.
[[nodiscard]] CommandResult carryOutRemoval(const CommandTask &task, const QString &prefix,
    const CatalogueSnapshot &known, const CommandTools &tools);

} // namespace brevok
