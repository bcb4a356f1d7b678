// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/Exchange.h"
#include "service/ServiceCookies.h"

namespace brevok {

/// The one road of all requests to the network. Main thread.
class NetworkFactory final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NetworkFactory)

public:
    explicit NetworkFactory(ServiceConfiguration configuration, QObject *parent = nullptr);
    ~NetworkFactory() override;

    [[nodiscard]] const ServiceConfiguration &configuration() const { return m_configuration; }

    /// A GET of @p url with the limits of every request.
    [[nodiscard]] ExchangeRequest request(const QUrl &url) const;

    /// Sends @p request and follows where it may be led to. What came last is handed to @p handler, once and
    /// later than the call; an HTTP status is no error, a body cut short is one. Nothing is called, and the
    /// request given up, when @p context goes. A Cookie or Authorization header never goes to another origin.
    void send(const ExchangeRequest &request, QObject *context, ServiceClient::ReplyHandler handler,
        HttpTransfers::Progress progress = {});

    /// For the exchanges.
    [[nodiscard]] HttpTransfers &transfers();
    [[nodiscard]] ServiceCookies &cookies() { return m_cookies; }
    [[nodiscard]] bool isService(const QUrl &url) const { return sameOrigin(url, m_configuration.baseUrl); }

private:
    ServiceConfiguration m_configuration;
    ServiceCookies m_cookies;
    std::unique_ptr<HttpTransfers> m_transfers; ///< made with the first request
};

} // namespace brevok
