// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/preferences/ChosenFolder.h"

#include "foundation/BoundedWork.h"
#include "foundation/Tasks.h"
#include "targets/BrevokTargetApps.h"
#include "ui/preferences/TargetOrder.h"

#include <QFileInfo>
#include <QPointer>

namespace brevok {

namespace {

enum class Depth { Host, Test };

ChosenFolder lookAround(const QString &path, const std::optional<FolderLook> &look, Depth depth)
{
    ChosenFolder chosen{.look = look, .host = {}, .passes = false};
    if (!look || !look->isFolder) {
        return chosen;
    }
    using Host = std::optional<HostApplication>;
    chosen.host = bounded<Host>(placeOf(path), [path](Pulse &) { return hostBeside(path); }).value_or(Host());
    if (depth == Depth::Test && isPlugInsPath(path)) {
        const auto search = [path](Pulse &pulse) {
            return hasInDesignBeside(path, pulse);
        };
        chosen.passes = bounded<bool>(placeOf(path), search).value_or(false);
    }
    return chosen;
}

void lookAtChosen(
    BrevokTargetApps &targets, const QString &path, QObject *context, Depth depth, ChosenFolderDone done)
{
    const QPointer guard(context);
    targets.lookAt(path, context, [path, guard, depth, done = std::move(done)](const auto &look) {
        inBackgroundThen(
            guard, [path, look, depth] { return lookAround(path, look, depth); }, done);
    });
}

} // namespace

void readChosenFolder(BrevokTargetApps &targets, const QString &path, QObject *context, ChosenFolderDone done)
{
    lookAtChosen(targets, path, context, Depth::Host, std::move(done));
}

void testChosenFolder(BrevokTargetApps &targets, const QString &path, QObject *context, ChosenFolderDone done)
{
    lookAtChosen(targets, path, context, Depth::Test, std::move(done));
}

void findFolder(const QStringList &folders, QObject *context, std::function<void(const QString &)> done)
{
    const auto find = [folders] {
        constexpr std::chrono::milliseconds patience(300); // a person waits for the chooser
        for (const QString &folder : folders) {
            const auto isFolder = [folder](Pulse &) {
                return QFileInfo(folder).isDir();
            };
            if (bounded<bool>(folder, isFolder, {}, patience).value_or(false)) {
                return folder;
            }
        }
        return QString();
    };
    inBackgroundThen(context, find, std::move(done));
}

} // namespace brevok
