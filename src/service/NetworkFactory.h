// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/ServiceClient.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>

namespace brevok {

/// Makes every network request of the program: one place for proxies, time-outs, authorities, redirects and
/// cookies. Main thread.
class NetworkFactory final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NetworkFactory)

public:
    explicit NetworkFactory(ServiceConfiguration configuration, QObject *parent = nullptr);
    ~NetworkFactory() override;

    [[nodiscard]] const ServiceConfiguration &configuration() const { return m_configuration; }

    /// The request for @p url with the system's proxy, TLS settings, time-out, and no more than five
    /// redirects, none of which leads from https to http. Nothing of the cookie jar is put into it.
    [[nodiscard]] QNetworkRequest request(const QUrl &url) const;

    /// Starts the request; the caller owns the reply.
    [[nodiscard]] QNetworkReply *send(
        const QNetworkRequest &request, const QByteArray &method, const QByteArray &body = {});

    /// A transport error of ours for a reply that failed; nothing for one that ended with any HTTP status.
    [[nodiscard]] static std::optional<BrevokError> transportError(const QNetworkReply &reply);

private:
    QNetworkAccessManager &manager();

    ServiceConfiguration m_configuration;
    QNetworkAccessManager *m_manager =
        nullptr; // built with the first request: a start without network needs none
};

} // namespace brevok
