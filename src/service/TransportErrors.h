// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"
#include "platform/HttpTransfers.h"

namespace brevok {

/// Codes of transportErrorDomain beside timedOutCode.
enum TransportErrorCode : int {
    TransportUnknown = -1,
    TransportTooSlow = -2,
    TransportHostNotFound = -1003,
    TransportCannotConnect = -1004,
    TransportConnectionLost = -1005,
    TransportTooManyRedirects = -1007,
    TransportRedirectedAway = -1010,
    TransportBadReply = -1011,
    TransportNotDecodable = -1016,
    TransportTooLong = -1103,
    TransportSecureConnectionFailed = -1200,
    TransportCertificateUntrusted = -1202,
};

/// @p url as logs and errors show it: without user, query and fragment, which may hold secrets.
[[nodiscard]] QString addressText(const QUrl &url);

[[nodiscard]] BrevokError transportError(int code, const QString &description, const QUrl &url);

/// Our error for the failure of @p reply to @p request, for the user.
[[nodiscard]] BrevokError transportErrorFor(const HttpReply &reply, const HttpRequest &request);

/// An error of a reply's content, for the user; @p url, where it is known, goes to the log.
[[nodiscard]] BrevokError replyError(int code, const QString &description, const QUrl &url = {});

} // namespace brevok
