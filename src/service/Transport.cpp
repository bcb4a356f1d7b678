// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/Transport.h"

#include <QNetworkCookie>
#include <QNetworkCookieJar>
#include <QNetworkProxyQuery>
#include <QNetworkReply>

namespace brevok {

namespace {

// Only what the user signed in with may be the session's cookie, not what a reply happened to set.
constexpr auto sessionCookie = "SessionId";

/// Answers the manager with what is known by now.
class KnownProxies final : public QNetworkProxyFactory {
public:
    explicit KnownProxies(const SystemProxies &proxies)
        : m_proxies(proxies)
    {
    }
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        return m_proxies.known(query.url());
    }

private:
    const SystemProxies &m_proxies;
};

QSslConfiguration tlsConfiguration(const QList<QSslCertificate> &extraAuthorities)
{
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setProtocol(QSsl::TlsV1_2OrLater);
    tls.setPeerVerifyMode(QSslSocket::VerifyPeer);
    // An explicit list takes the place of the system's, which is otherwise read as needed.
    if (!extraAuthorities.isEmpty()) {
        tls.setCaCertificates(QSslConfiguration::systemCaCertificates() + extraAuthorities);
    }
    return tls;
}

} // namespace

Transport::Transport(const QList<QSslCertificate> &extraAuthorities)
    : m_tls(tlsConfiguration(extraAuthorities))
{
    m_manager.setProxyFactory(new KnownProxies(m_proxies));
}

Transport::~Transport()
{
    Q_EMIT closing();
}

void Transport::prepare(const QUrl &url, QObject *context, Task then)
{
    m_proxies.whenKnown(url, context, std::move(then));
}

QNetworkReply *Transport::send(QNetworkRequest request, const QByteArray &method, const QByteArray &body)
{
    request.setSslConfiguration(m_tls);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    if (method == "GET") {
        return m_manager.get(request);
    }
    if (method == "POST") {
        return m_manager.post(request, body);
    }
    return m_manager.sendCustomRequest(request, method, body);
}

QByteArray Transport::storedCookies(const QUrl &url) const
{
    QByteArray header;
    const QList<QNetworkCookie> cookies = m_manager.cookieJar()->cookiesForUrl(url);
    for (const QNetworkCookie &cookie : cookies) {
        if (cookie.name() != sessionCookie) {
            header += (header.isEmpty() ? "" : "; ") + cookie.toRawForm(QNetworkCookie::NameAndValueOnly);
        }
    }
    return header;
}

} // namespace brevok
