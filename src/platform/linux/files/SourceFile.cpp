// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/SourceFile.h"

#include "foundation/Texts.h"
#include "platform/linux/files/FileDigest.h"
#include "platform/linux/files/FileErrors.h"

#include <QFile>

#include <cerrno>

#include <sys/stat.h>

namespace brevok {

namespace {

bool isRegular(int file, qint64 *size, int *code)
{
    struct stat facts { };
    *code = ::fstat(file, &facts) == 0 ? EINVAL : errno;
    *size = facts.st_size;
    return *code == EINVAL && S_ISREG(facts.st_mode);
}

} // namespace

std::unique_ptr<QFile> sourceOf(
    FileDescriptor opened, const QString &path, const QByteArray &checksum, FileOperations::ErrorSlot error)
{
    Cause cause(errno, Texts::tr("the archive cannot be read"));
    auto source = std::make_unique<QFile>(path);
    qint64 size = 0;
    if (opened && isRegular(opened.get(), &size, &cause.code)) {
        const QByteArray digest = checksum.isEmpty() ? QByteArray() : sha256Of(opened.get(), size);
        cause.code = errno;
        if (digest == checksum
            && source->open(
                opened.get(), QIODevice::ReadOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle)) {
            (void)opened.release();
            return source;
        }
        if (!digest.isEmpty()) {
            const QString reason = Texts::tr("the archive does not match the catalogue");
            cause = {EBADMSG, reason, reason};
        }
    }
    failWith(error, Texts::tr("Could not open the archive \"%1\"").arg(path), path, cause);
    return nullptr;
}

} // namespace brevok
