// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/NetworkFactory.h"

#include "service/FollowedReply.h"
#include "service/Transport.h"
#include "service/TransportErrors.h"

namespace brevok {

namespace {

constexpr int redirectLimit = 5;

} // namespace

NetworkFactory::NetworkFactory(ServiceConfiguration configuration, QObject *parent)
    : QObject(parent)
    , m_configuration(std::move(configuration))
{
}

NetworkFactory::~NetworkFactory() = default;

QNetworkRequest NetworkFactory::request(const QUrl &url) const
{
    QNetworkRequest request(url);
    request.setTransferTimeout(m_configuration.requestTimeoutMs);
    request.setMaximumRedirectsAllowed(redirectLimit);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    // A jar that holds a cookie for the host would replace a Cookie header set by hand.
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    const bool toService = url.host() == m_configuration.baseUrl.host();
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute,
        toService ? QNetworkRequest::Automatic : QNetworkRequest::Manual);
    // Version 2 of the protocol buffers without limit here, whatever the size of the read buffer.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

QNetworkReply *NetworkFactory::send(
    const QNetworkRequest &request, const QByteArray &method, const QByteArray &body)
{
    return new FollowedReply(transport(), request, method, body);
}

std::optional<BrevokError> NetworkFactory::transportError(const QNetworkReply &reply)
{
    const QNetworkReply::NetworkError error = reply.error();
    const bool answered = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
    if (error == QNetworkReply::NoError || (answered && isStatusError(error))) {
        return std::nullopt;
    }
    const auto *followed = qobject_cast<const FollowedReply *>(&reply);
    if (error == QNetworkReply::SslHandshakeFailedError && followed != nullptr
        && !followed->certificateErrors().isEmpty()) {
        return certificateError(reply.url(), followed->certificateErrors().constFirst().errorString());
    }
    return transportErrorFor(error, reply.url(), reply.errorString());
}

Transport &NetworkFactory::transport()
{
    if (!m_transport) {
        m_transport = std::make_unique<Transport>(m_configuration.extraAuthorities);
    }
    return *m_transport;
}

} // namespace brevok
