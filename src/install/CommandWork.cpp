// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/CommandWork.h"

#include "foundation/BoundedWork.h"
#include "foundation/Paths.h"
#include "foundation/Texts.h"
#include "install/FailureReason.h"
#include "install/InstallPaths.h"
#include "install/RunningTargets.h"
#include "platform/FileState.h"
#include "targets/TargetJudgement.h"

#include <algorithm>
#include <tuple>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

using End = PluginOutcome::End;

QString workspacePath(const CommandTask &task)
{
    return applicationFolder(task.pluginPath) + u"/Presets/InDesign Workspaces/Tolvane.xml"_s;
}

// One that is there already stays as it is.
bool workspaceNeedsHelper(const CommandTask &task, const HelperAccess &access)
{
    const QString path = workspacePath(task);
    return !access.own()->fileExistsAtPath(path) && access.isNeededFor(path);
}

// The disk of a target may have fallen silent since the plan was made, and must not keep other work waiting.
std::optional<FolderLook> answeringFolder(const QString &pluginPath)
{
    const auto look = [pluginPath](Pulse &) {
        std::ignore = fileState(pluginPath);
        return lookAtFolder(targetFolder(pluginPath));
    };
    return bounded<FolderLook>(applicationFolder(pluginPath), look);
}

// The error list that users see takes errors of calls that answered yes only.
void noteError(bool answer, const std::optional<BrevokError> &error, CommandResult &result)
{
    if (answer && error) {
        result.errors.append(*error);
    }
}

void installWorkspace(const CommandTask &task, const CommandTools &tools, CommandResult &result)
{
    const QString target = workspacePath(task);
    if (applicationFolder(task.pluginPath).isEmpty()) {
        return;
    }
    // The installer never replaces this file, so a refusal is the usual answer from the second time on.
    InstallerOperations &operations = tools.forPath(target);
    const bool isThere = operations.fileExistsAtPath(target);
    const InstallResult installed =
        operations.install({.source = task.workspaceFile, .target = target, .user = task.user});
    noteError(installed.answer, installed.error, result);
    const std::optional<BrevokError> failure = installed.failure ? installed.failure : installed.error;
    if (installed.answer ? failure.has_value() : !isThere) {
        PluginOutcome entry = task.entry(End::Failed, reasonOf(failure));
        entry.plugin = target.sliced(target.lastIndexOf(u'/') + 1);
        entry.detail = Texts::tr("The workspace could not be installed at %1.").arg(target);
        result.entries.append(entry);
    }
}

void installArchive(const CommandTask &task, const CommandTools &tools, CommandResult &result)
{
    InstallerOperations &operations = tools.forPath(task.pluginPath);
    const InstallResult installed = operations.install(
        {.source = task.archive, .target = task.pluginPath, .user = task.user, .checksum = task.checksum});
    noteError(installed.answer, installed.error, result);
    const std::optional<BrevokError> failure = installed.failure ? installed.failure : installed.error;
    if (installed.answer && !failure) {
        result.entries.append(task.entry(End::Installed, {}));
        return;
    }
    PluginOutcome entry = task.entry(End::Failed, reasonOf(failure));
    entry.detail = detailOf(failure);
    result.entries.append(entry);
    result.archiveIsBad = failure && blamesArchive(installed.answer, *failure);
}

} // namespace

CommandResult &CommandResult::operator+=(const CommandResult &other)
{
    errors += other.errors;
    entries += other.entries;
    archiveIsBad = archiveIsBad || other.archiveIsBad;
    return *this;
}

PluginOutcome CommandTask::entry(PluginOutcome::End end, const QString &reason) const
{
    return {.end = end, .plugin = plugin, .target = targetFolder(pluginPath), .reason = reason};
}

InstallerOperations &CommandTools::forPath(const QString &path) const
{
    return helper && access.isNeededFor(path) ? *helper : *access.own();
}

bool helperIsNeeded(const QList<CommandTask> &tasks, const HelperAccess &access)
{
    return std::any_of(tasks.cbegin(), tasks.cend(), [&](const CommandTask &task) {
        return answeringFolder(task.pluginPath)
            && (access.isNeededFor(task.pluginPath)
                || (!task.isRemoval() && workspaceNeedsHelper(task, access)));
    });
}

CommandLook lookAtTask(const CommandTask &task, const CommandTools &tools, RunningApplications &applications)
{
    CommandLook look;
    const QString place = applicationFolder(task.pluginPath);
    if (!place.isEmpty()) {
        look.running = getRunningApp(applications.list(), {u"InDesign"_s, u"InCopy"_s}, place);
    }
    const std::optional<FolderLook> folder = answeringFolder(task.pluginPath);
    if (!folder) {
        look.ended.errors.append(installerError(doesNotAnswer(place)));
        look.ended.entries.append(task.entry(End::Failed, doesNotAnswer(place)));
        return look;
    }
    look.isThere = tools.forPath(task.pluginPath).fileExistsAtPath(task.pluginPath);
    if (!task.isRemoval() && !folder->isFolder) {
        look.ended.entries.append(task.entry(End::Failed,
            folder->exists ? Texts::tr("something else has taken the folder's place")
                           : Texts::tr("the folder no longer exists")));
    }
    return look;
}

CommandResult carryOutInstall(const CommandTask &task, const CommandTools &tools)
{
    CommandResult result;
    installWorkspace(task, tools, result);
    installArchive(task, tools, result);
    return result;
}

CommandResult carryOutRemoval(
    const CommandTask &task, const QString &prefix, const CatalogueSnapshot &known, const CommandTools &tools)
{
    CommandResult result;
    InstallerOperations &operations = tools.forPath(task.pluginPath);
    const auto exists = [&](const QString &path) {
        return operations.fileExistsAtPath(path);
    };
    if (!canRemovePlugin(task.plugin, task.pluginPath, prefix, known, exists)) {
        result.entries.append(task.entry(End::LeftAlone, neededByAnotherPackage()));
        return result;
    }
    std::optional<BrevokError> error;
    const bool answer = operations.removeItemAtPath(task.pluginPath, &error);
    noteError(answer, error, result);
    if (answer && !error) {
        result.entries.append(task.entry(End::Removed, {}));
    } else {
        PluginOutcome entry = task.entry(End::Failed, reasonOf(error));
        entry.detail = detailOf(error);
        result.entries.append(entry);
    }
    return result;
}

} // namespace brevok
