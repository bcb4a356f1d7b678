// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/Transport.h"

#include <QCoreApplication>
#include <QNetworkCookie>
#include <QNetworkCookieJar>
#include <QNetworkProxyQuery>
#include <QNetworkReply>
#include <QSet>
#include <QTimer>

#include <algorithm>

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

/// A body that is given out once. What a service did with a request whose connection broke is unknown: the
/// library, which would send it again up to three times, cannot go back to the beginning here.
class BodySentOnce final : public QIODevice {
public:
    explicit BodySentOnce(QByteArray body)
        : m_body(std::move(body))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    [[nodiscard]] qint64 size() const override { return m_body.size(); }
    bool reset() override { return pos() == 0; }

protected:
    qint64 readData(char *data, qint64 length) override
    {
        const QByteArrayView piece = QByteArrayView(m_body).sliced(pos()).first(
            std::min(static_cast<qsizetype>(length), m_body.size() - pos()));
        std::copy(piece.begin(), piece.end(), data);
        return piece.isEmpty() && length > 0 ? -1 : piece.size();
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray m_body;
};

QSslConfiguration tlsConfiguration()
{
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setProtocol(QSsl::TlsV1_2OrLater);
    tls.setPeerVerifyMode(QSslSocket::VerifyPeer);
    return tls;
}

} // namespace

Transport::Transport(QByteArray extraAuthorities)
    : m_extraAuthorities(std::move(extraAuthorities))
{
    m_manager.setProxyFactory(new KnownProxies(m_proxies));
}

Transport::~Transport()
{
    Q_EMIT closing();
}

void Transport::prepare(const QUrl &url, QObject *context, Task then)
{
    if (m_tls) {
        m_proxies.whenKnown(url, context, std::move(then));
        return;
    }
    m_waiting.append({url, context, std::move(then)});
    if (m_waiting.size() == 1) {
        QTimer::singleShot(0, this, &Transport::loadTls); // not beside what is still to be done at the start
    }
}

// Loading the TLS library takes as long as the whole start of the program. It reads the system's authorities
// as it needs them, unless there is a list of one's own: that takes their place and has to hold them all.
// Reading them takes a tenth of a second, and finds each of them twice.
void Transport::loadTls()
{
    inBackground([self = QPointer<Transport>(this), extra = std::exchange(m_extraAuthorities, {})] {
        QSslConfiguration tls = tlsConfiguration();
        if (!extra.isEmpty()) {
            const QList<QSslCertificate> all = QSslConfiguration::systemCaCertificates();
            const QSet<QSslCertificate> once(all.cbegin(), all.cend());
            tls.setCaCertificates(once.values() + QSslCertificate::fromData(extra));
        }
        onMain(QCoreApplication::instance(), [self, tls] {
            if (self) {
                self->begin(tls);
            }
        });
    });
}

void Transport::begin(const QSslConfiguration &tls)
{
    m_tls = tls;
    const QList<Waiting> waiting = std::exchange(m_waiting, {});
    for (const Waiting &one : waiting) {
        if (one.context) {
            m_proxies.whenKnown(one.url, one.context, one.then);
        }
    }
}

QNetworkReply *Transport::send(QNetworkRequest request, const QByteArray &method, const QByteArray &body)
{
    request.setSslConfiguration(m_tls.value_or(QSslConfiguration()));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    if (method == "GET") {
        return m_manager.get(request);
    }
    if (method == "POST" && !body.isEmpty()) {
        auto device = std::make_unique<BodySentOnce>(body);
        QNetworkReply *reply = m_manager.post(request, device.get());
        device.release()->setParent(reply);
        return reply;
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
