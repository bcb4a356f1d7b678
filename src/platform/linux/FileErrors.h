// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QString>

namespace brevok {

/// An error of the domain of files: @p operation is what could not be done, @p path what it was done to,
/// @p code the system's errno. @p reason says why, the system's own words unless given.
[[nodiscard]] inline BrevokError fileError(
    const QString &operation, const QString &path, int code, const QString &reason = {})
{
    BrevokError error;
    error.domain = QString::fromLatin1(fileErrorDomain);
    error.code = code;
    error.description =
        QStringLiteral("%1: %2.").arg(operation, reason.isEmpty() ? qt_error_string(code) : reason);
    error.details.insert(QStringLiteral("Path"), path);
    return error;
}

} // namespace brevok
