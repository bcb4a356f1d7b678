// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/DurableFile.h"

#include "platform/linux/files/FileDescriptor.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>

namespace brevok {

namespace {

bool synced(const QString &path, int flags)
{
    const FileDescriptor file(::open(QFile::encodeName(path).constData(), flags | O_RDONLY | O_CLOEXEC));
    return file && ::fsync(file.get()) == 0;
}

} // namespace

bool renameDurably(const QString &from, const QString &to, std::optional<BrevokError> *error)
{
    const bool done = synced(from, O_NOFOLLOW)
        && std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0
        && synced(QFileInfo(to).absolutePath(), O_DIRECTORY);
    if (!done) {
        const int code = errno;
        *error = BrevokError{.domain = QString::fromLatin1(fileErrorDomain),
            .code = code,
            .description = qt_error_string(code),
            .details = {{QStringLiteral("Path"), to}}};
    }
    return done;
}

} // namespace brevok
