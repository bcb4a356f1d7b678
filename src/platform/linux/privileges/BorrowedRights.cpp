// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/privileges/BorrowedRights.h"

#include <cerrno>
#include <cstdlib>

#include <grp.h>
#include <sys/fsuid.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace brevok {

namespace {

constexpr gid_t nobodysGroup = 65534;

/// Of this thread alone: the library's own function is for all of them.
bool setGroups(const QList<gid_t> &groups)
{
    return ::syscall(SYS_setgroups, groups.size(), groups.constData()) == 0;
}

QList<gid_t> ownGroups()
{
    QList<gid_t> groups(qMax(::getgroups(0, nullptr), 0));
    groups.resize(qMax(::getgroups(static_cast<int>(groups.size()), groups.data()), 0));
    return groups;
}

/// Neither call tells whether it worked, and asking for an impossible id changes nothing.
bool become(uid_t user, gid_t group)
{
    ::setfsgid(group);
    ::setfsuid(user);
    return static_cast<gid_t>(::setfsgid(static_cast<gid_t>(-1))) == group
        && static_cast<uid_t>(::setfsuid(static_cast<uid_t>(-1))) == user;
}

} // namespace

BorrowedRights::BorrowedRights(const UserRights &rights)
    : m_own(ownGroups())
    , m_borrowed(::geteuid() == rights.user
          || (setGroups(rights.groups) && become(rights.user, rights.groups.value(0, nobodysGroup))))
{
}

BorrowedRights::~BorrowedRights()
{
    const int code = errno;
    // A thread that went on with the wrong rights would be worse than none.
    if (::geteuid() == 0 && (!become(0, ::getegid()) || !setGroups(m_own))) {
        std::abort();
    }
    errno = code;
}

} // namespace brevok
