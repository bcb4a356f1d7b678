// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/ReplacedItem.h"

#include "platform/linux/FileTree.h"
#include "platform/linux/SafePath.h"
#include "platform/linux/StagingFolder.h"

#include <cerrno>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevok::replaceditem {

namespace {

QByteArray nameAside(const QByteArray &name)
{
    return ".tolvane-replaced-" + name;
}

bool exists(int folder, const QByteArray &name)
{
    struct stat facts { };
    return ::fstatat(folder, name.constData(), &facts, AT_SYMLINK_NOFOLLOW) == 0;
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

} // namespace

bool setAside(int folder, const QByteArray &name)
{
    return discard(folder, name) && safepath::renameExclusively(folder, name, folder, nameAside(name));
}

bool discard(int folder, const QByteArray &name)
{
    QByteArray where;
    return filetree::remove(folder, nameAside(name), &where) || errno == ENOENT;
}

Repair repair(int folder, const QByteArray &name, const Interrupted &what)
{
    const bool staged = StagingFolder::removeStale(folder);
    const bool aside = exists(folder, nameAside(name));
    const bool doubtful =
        what.rebooted && !what.removal && (aside || (what.fresh && isOlderThanBoot(folder, name)));
    QByteArray where;
    const bool dropped = doubtful && exists(folder, name) && filetree::remove(folder, name, &where);
    if (aside && !what.removal && safepath::renameExclusively(folder, nameAside(name), folder, name)) {
        return Repair::Restored;
    }
    const bool discarded = aside && discard(folder, name);
    if (!what.removal && exists(folder, name)) {
        (void)safepath::sync(folder);
    }
    return staged || dropped || discarded ? Repair::Cleaned : Repair::NothingToDo;
}

} // namespace brevok::replaceditem
