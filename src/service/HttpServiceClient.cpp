// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/HttpServiceClient.h"

#include "foundation/Texts.h"
#include "service/NetworkFactory.h"
#include "service/ReplyDecoding.h"
#include "service/TransportErrors.h"

#include <QCryptographicHash>

namespace brevok {

namespace {

constexpr int httpOk = 200;
constexpr int httpNotModified = 304;
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

void HttpServiceClient::getList(
    const QString &path, const Validator &known, QObject *context, ReplyHandler handler)
{
    ExchangeRequest request = m_network.request(m_network.configuration().url(path));
    request.headers.emplaceBack(versionHeader, versionHeaderValue);
    const QString sessionId = m_sessionId();
    if (!sessionId.isEmpty()) {
        request.headers.append({"Cookie", "SessionId=" + sessionId.toUtf8()});
    }
    request.cookies = CookieRule::TakeAndSend;
    request.limits.bodyBytes = m_limits.listBytes;
    sendIfOther(std::move(request), sessionId, known, context, std::move(handler));
}

void HttpServiceClient::fetchFile(
    const QUrl &url, const Validator &known, QObject *context, ReplyHandler handler)
{
    ExchangeRequest request = m_network.request(url);
    request.headers = {{"Cache-Control", "no-cache"}, {"Pragma", "no-cache"}};
    request.limits.bodyBytes = m_limits.fileBytes;
    request.limits.wholeMs = m_limits.fileMs;
    request.takesTurns = true;
    sendIfOther(std::move(request), {}, known, context, std::move(handler));
}

// What another address says, to which the request was led, is not known to be the same the next time.
void HttpServiceClient::sendIfOther(ExchangeRequest request, const QString &sessionId, const Validator &known,
    QObject *context, ReplyHandler handler)
{
    const QByteArray scope = QCryptographicHash::hash(
        request.url.toEncoded() + '\n' + sessionId.toUtf8(), QCryptographicHash::Blake2b_256)
                                 .toHex();
    const HeaderFields condition = known.scope == scope ? conditionOf(known) : HeaderFields();
    request.headers += condition;
    const auto judge = [url = request.url, scope, asked = !condition.isEmpty(), handler = std::move(handler)](
                           ServiceReply reply) {
        if (!reply.error && reply.url == url) {
            reply.notModified = asked && reply.status == httpNotModified;
            reply.validator = reply.status == httpOk ? validatorIn(reply.headers, scope) : Validator();
        }
        handler(reply);
    };
    m_network.send(request, context, judge);
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
