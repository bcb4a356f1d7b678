// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/FailureReason.h"

#include "foundation/Texts.h"
#include "platform/FileOperations.h"

#include <cerrno>

namespace brevok {

namespace {

bool isOfFiles(const BrevokError &failure)
{
    return failure.domain == QLatin1StringView(fileErrorDomain);
}

} // namespace

QString reasonOf(const std::optional<BrevokError> &failure)
{
    if (!failure || failure->description.isEmpty()) {
        return Texts::tr("the reason is not known");
    }
    if (isOfFiles(*failure)) {
        switch (failure->code) {
        case EACCES:
        case EDQUOT:
        case ENOSPC:
        case EROFS:
            return reasonOf(failure->code);
        case EILSEQ:
            return Texts::tr("the archive is damaged");
        default:
            break;
        }
    }
    return failure->description;
}

QString detailOf(const std::optional<BrevokError> &failure)
{
    return failure && reasonOf(failure) != failure->description ? failure->description : QString();
}

bool blamesArchive(bool answer, const BrevokError &failure)
{
    if (!isOfFiles(failure)) {
        return answer; // it was looked into
    }
    switch (failure.code) {
    case EACCES:
    case EBUSY:
    case EDQUOT:
    case EFBIG:
    case EIO:
    case ELOOP:
    case EMFILE:
    case ENAMETOOLONG:
    case ENFILE:
    case ENODEV:
    case ENOENT:
    case ENOMEM:
    case ENOSPC:
    case ENOTDIR:
    case EPERM:
    case EROFS:
    case ESTALE:
    case ETIMEDOUT:
        return false;
    default:
        return true;
    }
}

} // namespace brevok
