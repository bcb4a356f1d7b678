// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/ReplacedItem.h"

#include "foundation/Log.h"
#include "platform/linux/files/FileTree.h"
#include "platform/linux/files/SafePath.h"
#include "platform/linux/files/StagingFolder.h"

#include <QByteArrayView>
#include <QFile>
#include <QRandomGenerator>

#include <cerrno>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevok::replaceditem {

namespace {

// Of what comes back, before the item's own name; and of what does not.
constexpr auto asidePrefix = ".tolvane-replaced-";
constexpr auto removedPrefix = ".tolvane-removed-";

QByteArray nameAside(const QByteArray &name)
{
    return asidePrefix + name;
}

/// Whether the item was last changed before this start of the system.
bool isOlderThanBoot(int folder, const QByteArray &name)
{
    struct stat facts { };
    timespec now{};
    timespec sinceBoot{};
    return ::fstatat(folder, name.constData(), &facts, AT_SYMLINK_NOFOLLOW) == 0
        && ::clock_gettime(CLOCK_REALTIME, &now) == 0 && ::clock_gettime(CLOCK_BOOTTIME, &sinceBoot) == 0
        && facts.st_ctim.tv_sec < now.tv_sec - sinceBoot.tv_sec;
}

/// Takes an item out of sight and deletes it.
Removed takeOut(int folder, const QByteArray &name)
{
    constexpr int hexadecimal = 16;
    const QByteArray out =
        removedPrefix + QByteArray::number(QRandomGenerator::system()->generate64(), hexadecimal);
    if (!safepath::renameExclusively(folder, name, folder, out)) {
        return Removed::No;
    }
    QByteArray where;
    if (filetree::remove(folder, out, &where)) {
        return Removed::Whole;
    }
    const int code = errno;
    logLine(QStringLiteral("what was removed could not be deleted yet: %1 (%2)")
                .arg(qt_error_string(code), QFile::decodeName(where)));
    errno = code;
    return Removed::InPart;
}

/// Ends the work on one item, but for what may lie about beside it.
Repair settle(int folder, const QByteArray &name, const Interrupted &what)
{
    const bool aside = safepath::exists(folder, nameAside(name));
    const bool doubtful =
        what.rebooted && !what.removal && (aside || (what.fresh && isOlderThanBoot(folder, name)));
    const bool dropped = doubtful && safepath::exists(folder, name) && takeOut(folder, name) != Removed::No;
    if (aside && !what.removal && bringBack(folder, name)) {
        return Repair::Restored;
    }
    return (aside && discard(folder, name)) || dropped ? Repair::Cleaned : Repair::NothingToDo;
}

/// Deletes what earlier runs had begun to delete. @return whether there was anything
bool removeRemoved(int folder)
{
    bool found = false;
    const QByteArrayList names = safepath::names(folder).value_or(QByteArrayList());
    for (const QByteArray &name : names) {
        QByteArray where;
        found = (name.startsWith(removedPrefix) && filetree::remove(folder, name, &where)) || found;
    }
    return found;
}

} // namespace

// What would come back after that would be taken for a plug-in that nobody removed.
Removed remove(int folder, const QByteArray &name)
{
    return discard(folder, name) ? takeOut(folder, name) : Removed::No;
}

bool setAside(int folder, const QByteArray &name)
{
    return discard(folder, name) && safepath::renameExclusively(folder, name, folder, nameAside(name));
}

bool bringBack(int folder, const QByteArray &name)
{
    return safepath::renameExclusively(folder, nameAside(name), folder, name);
}

bool discard(int folder, const QByteArray &name)
{
    QByteArray where;
    return takeOut(folder, nameAside(name)) != Removed::No || errno == ENOENT
        || filetree::remove(folder, nameAside(name), &where);
}

Repair repair(int folder, const QByteArray &name, const Interrupted &what)
{
    const Repair repaired = settle(folder, name, what);
    const bool staged = StagingFolder::removeStale(folder);
    const bool removed = removeRemoved(folder);
    if (!what.removal && repaired != Repair::Restored && safepath::exists(folder, name)) {
        (void)safepath::sync(folder);
    }
    return repaired == Repair::NothingToDo && (staged || removed) ? Repair::Cleaned : repaired;
}

// What comes back does so before anything else is done, which may take its time.
bool repairAll(int folder)
{
    bool found = false;
    const QByteArrayList names = safepath::names(folder).value_or(QByteArrayList());
    for (const QByteArray &name : names) {
        if (name.startsWith(asidePrefix)) {
            const Interrupted what{.rebooted = isOlderThanBoot(folder, name)};
            found = settle(folder, name.mid(QByteArrayView(asidePrefix).size()), what) != Repair::NothingToDo
                || found;
        }
    }
    found = StagingFolder::removeStale(folder) || found;
    return removeRemoved(folder) || found;
}

} // namespace brevok::replaceditem
