// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/ServiceClient.h"

#include <QNetworkRequest>

#include <memory>

namespace brevok {

class Transport;

/// Makes every network request of the program: one place for proxies, time-outs, authorities, redirects and
/// cookies. Main thread.
class NetworkFactory final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NetworkFactory)

public:
    explicit NetworkFactory(ServiceConfiguration configuration, QObject *parent = nullptr);
    ~NetworkFactory() override;

    [[nodiscard]] const ServiceConfiguration &configuration() const { return m_configuration; }

    /// Set to true on a request: the cookies that the service gave this program before go with it, behind
    /// those of a Cookie header set by hand, on every host it is led to. The session's own cookie is never
    /// among them.
    static constexpr auto storedCookies = static_cast<QNetworkRequest::Attribute>(QNetworkRequest::User + 1);

    /// The request for @p url with the system's proxy, TLS settings, time-out, and no more than five
    /// redirects, none of which leads from https to http. Nothing of the cookie jar is put into it.
    [[nodiscard]] QNetworkRequest request(const QUrl &url) const;

    /// Starts the request; the caller owns the reply. Nothing is signalled before the event loop runs again.
    /// Redirects, the body's compression and a slow look-up of proxies are dealt with behind the reply: its
    /// head is the last one, a Cookie or Authorization header set by hand never goes to another host, and a
    /// body that was cut short ends with an error (one that ends with its connection, without a length,
    /// cannot be told from a whole one). Only where the caller sets Accept-Encoding is the body handed on as
    /// it comes.
    [[nodiscard]] QNetworkReply *send(
        const QNetworkRequest &request, const QByteArray &method, const QByteArray &body = {});

    /// A transport error of ours for a reply that failed; nothing for one that ended with any HTTP status.
    [[nodiscard]] static std::optional<BrevokError> transportError(const QNetworkReply &reply);

private:
    Transport &transport();

    ServiceConfiguration m_configuration;
    std::unique_ptr<Transport>
        m_transport; // built with the first request: a start without network needs none
};

} // namespace brevok
