// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/ServiceClient.h"

namespace brevok {

class NetworkFactory;

/// One report on its way to the service.
struct ReportPost {
    QString path; ///< on the service
    QString sessionId; ///< empty when signed out
    QByteArray body; ///< JSON
};

/// Sends @p post. Answers of more than a few hundred kilobytes are given up with an error of
/// connectionErrorDomain; the whole exchange may take five minutes. @p handler as for ServiceClient. Main
/// thread.
void sendReport(
    NetworkFactory &network, const ReportPost &post, QObject *context, ServiceClient::ReplyHandler handler);

/// "500 - internal server error": a status as log lines and alerts show it.
[[nodiscard]] QString statusText(int status);

} // namespace brevok
