// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/privileges/BorrowedRights.h"

#include <QByteArray>

#include <sys/types.h>

/// Opening paths that somebody else names, for a process with more rights than they have. A link on the way
/// is followed only where nobody but root can have put it: it is root's, in a folder that only root may
/// change. Failures leave their reason in errno, ELOOP for a link that is not followed.
namespace brevok::guardedpath {

enum class Missing { Refused, Created };
/// Whose folders a path may lead through: anybody's, or only such as belong to root (or to this process's
/// user) and cannot be changed by everybody. A group that may change them is the administrator's decision.
enum class Folders { Anybodys, Roots };

/// Opens the folder at the absolute @p path, for look-ups and for what stands in it. Missing folders are made
/// with mode 0755 where the caller wants that.
[[nodiscard]] FileDescriptor openFolder(
    const QByteArray &path, Missing missing = Missing::Refused, Folders folders = Folders::Anybodys);

/// Whether there is something at the absolute @p path for all that @p user may know: root's folders on the
/// way keep nothing from that user, those of others do where the user may not pass through them.
[[nodiscard]] bool isVisible(const QByteArray &path, const UserRights &user);

/// Opens the regular file at the absolute @p path for reading if it is @p owner's own; nothing else, links
/// and pipes included, is opened at all; EACCES then.
[[nodiscard]] FileDescriptor openOwnFile(const QByteArray &path, uid_t owner);

/// Copies @p size bytes from the beginning of @p file to a file without a name in @p folder, or in memory
/// when that is empty, which nobody else can write to. @return the copy, open for reading and writing at its
/// beginning
[[nodiscard]] FileDescriptor privateCopy(int file, qint64 size, const QByteArray &folder);

} // namespace brevok::guardedpath
