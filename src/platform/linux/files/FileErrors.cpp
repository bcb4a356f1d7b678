// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/FileErrors.h"

#include "foundation/Texts.h"
#include "platform/FileOperations.h"

#include <cerrno>

namespace brevok {

QString reasonOf(int code)
{
    switch (code) {
    case ENOSPC:
    case EDQUOT:
        return Texts::tr("no space left on the disk");
    case EACCES:
    case EPERM:
        return Texts::tr("no permission to change the folder");
    case EROFS:
        return Texts::tr("the disk is write-protected");
    case EIO:
        return Texts::tr("the disk reports an error");
    case ENOENT:
    case ENOTDIR:
        return Texts::tr("the folder no longer exists");
    default:
        return qt_error_string(code);
    }
}

BrevokError fileError(const QString &operation, const QString &path, const Cause &cause)
{
    const auto error = [&](const QString &description) {
        return BrevokError{
            .domain = QString::fromLatin1(fileErrorDomain), .code = cause.code, .description = description};
    };
    BrevokError result = error(QStringLiteral("%1: %2.").arg(
        operation, cause.exactly.isEmpty() ? qt_error_string(cause.code) : cause.exactly));
    result.detailedErrors.append(error(cause.reason.isEmpty() ? reasonOf(cause.code) : cause.reason));
    result.details.insert(QStringLiteral("Path"), path);
    return result;
}

bool failWith(
    std::optional<BrevokError> *error, const QString &operation, const QString &path, const Cause &cause)
{
    if (error != nullptr) {
        *error = fileError(operation, path, cause);
    }
    return false;
}

} // namespace brevok
