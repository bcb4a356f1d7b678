// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/BrevokSessionConnection.h"

#include "foundation/Log.h"
#include "service/NetworkFactory.h"
#include "service/ReplyDecoding.h"
#include "service/TransportErrors.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// Everything but what must stay secret: no body (it holds the password) and no cookie.
void logRequest(const SessionRequest &sent)
{
    logLine(u"Session request: %1 %2, %3 bytes"_s.arg(
        QString::fromLatin1(sent.method), addressText(sent.url), QString::number(sent.body.size())));
    for (const auto &[name, value] : sent.headers) {
        const bool secret = name.compare("Cookie", Qt::CaseInsensitive) == 0;
        logLine(u"  %1: %2"_s.arg(
            QString::fromLatin1(name), secret ? u"(not logged)"_s : QString::fromLatin1(value)));
    }
}

} // namespace

BrevokSessionConnection::BrevokSessionConnection(
    NetworkFactory &network, const SessionRequest &request, int sessionAction, QObject *parent)
    : QObject(parent)
    , status(sessionAction)
    , originalRequest2(request)
{
    if (detailedLog()) {
        logRequest(request);
    }
    network.send(request, this, [this](const ServiceReply &reply) { didEnd(reply); });
}

BrevokSessionConnection::~BrevokSessionConnection() = default;

void BrevokSessionConnection::didEnd(const ServiceReply &reply)
{
    if (reply.status != 0) {
        responseHTTP = reply;
    }
    if (reply.status != 0 && reply.status != 200) {
        logLine(u"Session connection to: \"%1\" failed with response: %2 - %3"_s.arg(addressText(reply.url),
            QString::asprintf("%.3d", reply.status), localizedStringForStatusCode(reply.status)));
    }
    // A body that nobody can decode has arrived; it is handed on as it came, and is then no reply.
    if (reply.error && reply.error->code != TransportNotDecodable) {
        responseError = reply.error;
        Q_EMIT didFailWithError(this, *responseError);
        return;
    }
    responseData = reply.body;
    if (detailedLog()) {
        logLine(u"Session reply: %1 with %2 bytes"_s.arg(reply.status).arg(responseData.size()));
    }
    Q_EMIT didFinishLoading(this);
}

} // namespace brevok
