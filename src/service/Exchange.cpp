// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/Exchange.h"

#include "foundation/Texts.h"
#include "service/NetworkFactory.h"
#include "service/ServerTrust.h"
#include "service/TransportErrors.h"

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int redirectLimit = 5;

bool keepsMethod(int status)
{
    return status == 307 || status == 308;
}

std::optional<BrevokError> redirectFault(
    const ExchangeRequest &request, const QUrl &target, int status, int count)
{
    if (count > redirectLimit) {
        return transportError(TransportTooManyRedirects, Texts::tr("Too many HTTP redirects."), request.url);
    }
    const bool bringsSomething = request.method != "GET";
    if (bringsSomething && !sameOrigin(request.url, target)) {
        return transportError(TransportRedirectedAway,
            Texts::tr("The server redirected the request to another server."), request.url);
    }
    if (bringsSomething && !keepsMethod(status)) {
        return transportError(TransportRedirectedAway,
            Texts::tr("The server redirected the request in a way that would lose it."), request.url);
    }
    if (target.scheme() != "https"_L1 || target.host().isEmpty()) {
        return transportError(TransportUnknown,
            Texts::tr("The server redirected the request to an address that is not secure."), request.url);
    }
    return std::nullopt;
}

// What proves who the user is stays with the host it was meant for, a condition with its address.
ExchangeRequest redirected(ExchangeRequest request, const QUrl &target)
{
    const bool away = !sameOrigin(request.url, target);
    const QUrl url = target.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    const bool elsewhere = url != request.url;
    request.url = url;
    request.headers.removeIf([away, elsewhere](const auto &field) {
        const QByteArray name = field.first.toLower();
        return (away && (name == "cookie" || name == "authorization"))
            || (elsewhere && isCondition(field.first));
    });
    return request;
}

} // namespace

bool sameOrigin(const QUrl &a, const QUrl &b)
{
    const auto port = [](const QUrl &url) {
        return url.port(url.scheme() == "https"_L1 ? 443 : 80);
    };
    return a.scheme() == b.scheme() && a.host() == b.host() && port(a) == port(b);
}

Exchange::Exchange(NetworkFactory &network, ExchangeRequest request, Asker asker)
    : QObject(&network)
    , m_network(network)
    , m_originalUrl(request.url)
    , m_request(std::move(request))
    , m_asker(std::move(asker))
{
    connect(m_asker.context, &QObject::destroyed, this, [this] {
        m_network.transfers().cancel(m_transfer);
        deleteLater();
    });
    m_age.start();
    startHop();
}

Exchange::~Exchange() = default;

void Exchange::startHop()
{
    HttpRequest hop = m_request;
    if (m_request.cookies == CookieRule::TakeAndSend && m_network.isService(hop.url)) {
        const QByteArray stored = m_network.cookies().headerFor(hop.url);
        const auto given = std::find_if(hop.headers.begin(), hop.headers.end(),
            [](const auto &field) { return field.first == "Cookie"; });
        if (given != hop.headers.end() && !stored.isEmpty()) {
            given->second += "; " + stored;
        } else if (!stored.isEmpty()) {
            hop.headers.append({"Cookie", stored});
        }
    }
    if (hop.limits.wholeMs > 0) {
        hop.limits.wholeMs = std::max(1, hop.limits.wholeMs - static_cast<int>(m_age.elapsed()));
    }
    m_transfer = m_network.transfers().start(
        std::move(hop), m_asker.progress, [self = QPointer<Exchange>(this)](const HttpReply &reply) {
            if (self && self->m_asker.context) {
                self->hopEnded(reply);
            }
        });
}

void Exchange::hopEnded(const HttpReply &reply)
{
    if (reply.handshake && m_request.logsChallenges) {
        logFirstChallenge(m_request.url, m_originalUrl, m_network.configuration().baseUrl.host());
    }
    if (m_request.cookies != CookieRule::None && m_network.isService(m_request.url)) {
        m_network.cookies().take(reply.headers, m_request.url);
    }
    if (reply.failure != HttpFailure::None) {
        settle(reply, transportErrorFor(reply, m_request));
    } else if (leadsElsewhere(reply)) {
        follow(reply);
    } else {
        settle(reply, std::nullopt);
    }
}

void Exchange::follow(const HttpReply &reply)
{
    const QUrl target = m_request.url.resolved(QUrl::fromEncoded(headerValue(reply.headers, "Location")));
    if (const auto fault = redirectFault(m_request, target, reply.status, ++m_redirects)) {
        settle({}, fault);
        return;
    }
    m_request = redirected(std::move(m_request), target);
    startHop();
}

void Exchange::settle(const HttpReply &reply, const std::optional<BrevokError> &error)
{
    deleteLater();
    m_asker.context->disconnect(this);
    const ServiceReply result{.url = m_request.url,
        .status = reply.status,
        .body = reply.body,
        .headers = reply.headers,
        .received = reply.received,
        .error = error};
    m_asker.handler(result);
}

} // namespace brevok
