// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/RegularFile.h"

#include "platform/linux/FileDescriptor.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevok {

std::optional<QByteArray> readRegularFile(const QString &path, qint64 limit)
{
    // Without O_NONBLOCK a FIFO in the file's place would be waited for.
    const FileDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    struct stat facts = {};
    if (!file || ::fstat(file.get(), &facts) != 0 || !S_ISREG(facts.st_mode) || facts.st_size > limit) {
        return std::nullopt;
    }
    QByteArray bytes(facts.st_size, Qt::Uninitialized);
    qsizetype length = 0;
    while (length < bytes.size()) {
        const ssize_t count =
            ::read(file.get(), bytes.data() + length, static_cast<size_t>(bytes.size() - length));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        length += count;
    }
    bytes.truncate(length);
    return bytes;
}

} // namespace brevok
