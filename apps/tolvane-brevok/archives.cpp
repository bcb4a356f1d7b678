// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// What reads archives, as the application loads it with the first one.

#include "platform/linux/files/FileDigest.h"
#include "platform/linux/files/ZipReader.h"

/// @return a reader that the caller deletes
extern "C" Q_DECL_EXPORT brevok::ZipReader *openArchive(int archive, size_t blockSize)
{
    return brevok::openZipReader(archive, blockSize).release();
}

extern "C" Q_DECL_EXPORT void digestOfArchive(int file, qint64 size, QByteArray *digest)
{
    *digest = brevok::sha256Of(file, size);
}
