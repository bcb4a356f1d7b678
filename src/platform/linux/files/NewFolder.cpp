// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/NewFolder.h"

#include <QByteArrayList>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevok::newfolder {

FileDescriptor open(int folder, const QByteArray &path, Links links)
{
    constexpr mode_t mode = 0755;
    const int flags = O_PATH | O_DIRECTORY | O_CLOEXEC | (links == Links::Refused ? O_NOFOLLOW : 0);
    FileDescriptor current(::openat(folder, ".", flags));
    QByteArrayList names = path.split('/');
    names.removeAll(QByteArray());
    for (const QByteArray &name : std::as_const(names)) {
        FileDescriptor next(::openat(current.get(), name.constData(), flags));
        if (!next && errno == ENOENT
            && (::mkdirat(current.get(), name.constData(), mode) == 0 || errno == EEXIST)) {
            next = FileDescriptor(::openat(current.get(), name.constData(), flags));
        }
        if (!next) {
            return {};
        }
        current = std::move(next);
    }
    // What was opened for look-ups only is opened for real by its own name in itself.
    return current ? FileDescriptor(::openat(current.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC))
                   : FileDescriptor();
}

} // namespace brevok::newfolder
