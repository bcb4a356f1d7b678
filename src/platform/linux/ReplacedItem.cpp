// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/ReplacedItem.h"

#include "platform/linux/FileTree.h"
#include "platform/linux/SafePath.h"
#include "platform/linux/StagingFolder.h"

#include <cerrno>

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

Repair repair(int folder, const QByteArray &name, bool restore)
{
    const bool staged = StagingFolder::removeStale(folder);
    if (!exists(folder, nameAside(name))) {
        return staged ? Repair::Cleaned : Repair::NothingToDo;
    }
    if (restore && safepath::renameExclusively(folder, nameAside(name), folder, name)) {
        return Repair::Restored;
    }
    return discard(folder, name) || staged ? Repair::Cleaned : Repair::NothingToDo;
}

} // namespace brevok::replaceditem
