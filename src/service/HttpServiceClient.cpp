// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/HttpServiceClient.h"

#include "foundation/Texts.h"
#include "service/NetworkFactory.h"
#include "service/ReplyDecoding.h"
#include "service/TransportErrors.h"

namespace brevok {

namespace {

constexpr int httpOk = 200;
// An archive has all the time there is, but others wait for its turn.
constexpr qint64 leastProgress = 32LL * 1024;

} // namespace

HttpServiceClient::HttpServiceClient(NetworkFactory &network, std::function<QString()> sessionId,
    std::function<bool()> reachable, ServiceLimits limits, QObject *parent)
    : QObject(parent)
    , m_network(network)
    , m_sessionId(std::move(sessionId))
    , m_reachable(std::move(reachable))
    , m_limits(limits)
{
}

HttpServiceClient::~HttpServiceClient() = default;

bool HttpServiceClient::checkNetworkReachability()
{
    return m_reachable();
}

void HttpServiceClient::getList(const QString &path, QObject *context, ReplyHandler handler)
{
    ExchangeRequest request = m_network.request(m_network.configuration().url(path));
    request.headers.emplaceBack(versionHeader, versionHeaderValue);
    if (const QString sessionId = m_sessionId(); !sessionId.isEmpty()) {
        request.headers.append({"Cookie", "SessionId=" + sessionId.toUtf8()});
    }
    request.cookies = CookieRule::TakeAndSend;
    request.limits.bodyBytes = m_limits.listBytes;
    m_network.send(request, context, std::move(handler));
}

void HttpServiceClient::fetchFile(const QUrl &url, QObject *context, ReplyHandler handler)
{
    ExchangeRequest request = m_network.request(url);
    request.headers = {{"Cache-Control", "no-cache"}, {"Pragma", "no-cache"}};
    request.limits.bodyBytes = m_limits.fileBytes;
    request.limits.wholeMs = m_limits.fileMs;
    request.takesTurns = true;
    m_network.send(request, context, std::move(handler));
}

// An archive's host is none of the service's business: it neither gets nor gives cookies.
void HttpServiceClient::download(
    const DownloadOrder &order, QObject *context, ProgressHandler progress, DownloadHandler handler)
{
    ExchangeRequest request = m_network.request(order.url);
    request.destination = order.destination;
    request.expectedSize = order.expectedSize;
    request.checksum = order.checksum;
    request.limits.wholeMs = 0;
    request.limits.leastBytes = leastProgress;
    request.takesTurns = true;
    HttpTransfers::Progress told;
    if (progress) {
        told = [expectedSize = order.expectedSize, progress = std::move(progress)](qint64 done) {
            progress(done, expectedSize);
        };
    }
    m_network.send(
        request, context,
        [url = order.url, handler = std::move(handler)](const ServiceReply &reply) {
            std::optional<BrevokError> error = reply.error;
            if (!error && reply.status != httpOk) {
                error = replyError(
                    reply.status, Texts::tr("Server responded with HTTP code: %1.").arg(reply.status), url);
            }
            handler({.received = reply.received, .stored = !error, .error = error});
        },
        std::move(told));
}

} // namespace brevok
