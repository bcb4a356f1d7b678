// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/LocalSockets.h"

#include "platform/linux/files/FileDescriptor.h"

#include <QFile>

#include <algorithm>
#include <iterator>

#include <sys/socket.h>
#include <sys/un.h>

namespace brevok {

bool answersAtSocket(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (name.isEmpty() || static_cast<size_t>(name.size()) >= sizeof address.sun_path) {
        return false;
    }
    std::copy(name.cbegin(), name.cend(), std::begin(address.sun_path));
    const FileDescriptor connection(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    return connection
        && ::connect(connection.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
}

} // namespace brevok
