// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

namespace brevok {

/// Errors of the application's own updates.
inline constexpr auto updateErrorDomain = "com.tolvane.brevok.updates";

/// Codes of updateErrorDomain.
enum class UpdateError {
    NotAvailable = 1, ///< this build has no key to verify updates with
    Unreachable, ///< there is no network
    ServerError, ///< the server answered with an HTTP error
    UnreadableFeed,
    UnsafeItem, ///< the feed offers a newer version that cannot be taken
    WrongSignature,
    WrongPackage, ///< signed, but not what the feed announced
    FileFailure,
};

[[nodiscard]] inline BrevokError updateError(UpdateError code, const QString &description)
{
    return {.domain = QString::fromLatin1(updateErrorDomain),
        .code = static_cast<int>(code),
        .description = description};
}

} // namespace brevok
