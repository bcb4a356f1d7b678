// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/FileDigest.h"

#include "platform/linux/files/Sha256.h"

#include <algorithm>
#include <cerrno>
#include <vector>

#include <unistd.h>

namespace brevok {

QByteArray sha256Of(int file, qint64 size)
{
    constexpr qint64 blockSize = qint64(128) * 1024;
    std::vector<char> block(blockSize);
    Sha256 digest;
    off_t at = 0;
    while (at < size) {
        const ssize_t got =
            ::pread(file, block.data(), static_cast<size_t>(std::min<qint64>(blockSize, size - at)), at);
        if (got == 0 || (got < 0 && errno != EINTR)) {
            errno = got == 0 ? EIO : errno;
            return {};
        }
        if (got > 0) {
            digest.add({block.data(), got});
            at += got;
        }
    }
    return digest.take();
}

} // namespace brevok
