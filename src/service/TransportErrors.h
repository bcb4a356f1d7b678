// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QNetworkReply>

namespace brevok {

/// Codes of transportErrorDomain beside timedOutCode.
enum TransportErrorCode : int {
    TransportUnknown = -1,
    TransportCancelled = -999,
    TransportHostNotFound = -1003,
    TransportCannotConnect = -1004,
    TransportConnectionLost = -1005,
    TransportTooManyRedirects = -1007,
    TransportSecureConnectionFailed = -1200,
    TransportCertificateUntrusted = -1202,
};

/// Whether the library's @p error says no more than the HTTP status does.
[[nodiscard]] bool isStatusError(QNetworkReply::NetworkError error);

/// Our error for the library's @p error on the way to @p url. @p reason is the library's own text.
[[nodiscard]] BrevokError transportErrorFor(
    QNetworkReply::NetworkError error, const QUrl &url, const QString &reason);

/// As above, for a certificate that was refused.
[[nodiscard]] BrevokError certificateError(const QUrl &url, const QString &reason);

/// An error of a reply's content, for the user, on the way to @p url.
[[nodiscard]] BrevokError replyError(int code, const QString &description, const QUrl &url);

} // namespace brevok
