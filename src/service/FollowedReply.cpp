// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/FollowedReply.h"

#include "foundation/Secrets.h"
#include "service/NetworkFactory.h"
#include "service/Transport.h"
#include "service/TransportErrors.h"

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 pieceSize = qint64{64} * 1024;
constexpr qint64 redirectBodyLimit = qint64{1024} * 1024;
// What may be left to decompress when the last byte has arrived, with a reader that keeps up: far less.
constexpr qsizetype restLimit = qsizetype{256} * 1024 * 1024;
constexpr int mostKeptConnections = 6; // that the library has to one host

QNetworkAccessManager::Operation operationOf(const QByteArray &method)
{
    if (method == "GET") {
        return QNetworkAccessManager::GetOperation;
    }
    return method == "POST" ? QNetworkAccessManager::PostOperation : QNetworkAccessManager::CustomOperation;
}

bool isRedirect(int status)
{
    return (status >= 301 && status <= 303) || status == 307 || status == 308;
}

bool sameOrigin(const QUrl &a, const QUrl &b)
{
    const auto port = [](const QUrl &url) {
        return url.port(url.scheme() == u"https"_s ? 443 : 80);
    };
    return a.scheme() == b.scheme() && a.host() == b.host() && port(a) == port(b);
}

bool mayLead(const QUrl &from, const QUrl &to)
{
    return to.isValid() && !to.host().isEmpty()
        && (to.scheme() == u"https"_s || (to.scheme() == u"http"_s && from.scheme() == u"http"_s));
}

bool isGzip(const QNetworkReply &reply)
{
    const QByteArray encoding = reply.rawHeader("Content-Encoding").trimmed().toLower();
    return encoding == "gzip" || encoding == "x-gzip";
}

} // namespace

FollowedReply::FollowedReply(
    Transport &transport, const QNetworkRequest &request, QByteArray method, QByteArray body)
    : m_transport(transport)
    , m_request(request)
    , m_method(std::move(method))
    , m_body(std::move(body))
{
    setRequest(request);
    setUrl(request.url());
    setOperation(operationOf(m_method));
    QIODevice::open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    m_idle.setSingleShot(true);
    m_idle.setInterval(request.transferTimeout());
    connect(&m_idle, &QTimer::timeout, this,
        [this] { end(TimeoutError, u"Nothing arrived for %1 ms"_s.arg(m_idle.interval())); });
    connect(&transport, &Transport::closing, this, &FollowedReply::abort);
    QMetaObject::invokeMethod(this, &FollowedReply::startHop, Qt::QueuedConnection);
}

FollowedReply::~FollowedReply()
{
    if (m_hop != nullptr) {
        m_hop->disconnect(this);
    }
}

void FollowedReply::startHop()
{
    if (m_ended) {
        return;
    }
    somethingMoved();
    m_transport.prepare(m_request.url(), this, [this] {
        if (!m_ended) {
            send();
        }
    });
}

void FollowedReply::send()
{
    somethingMoved();
    QNetworkRequest request = m_request;
    // The time is watched here, so that running out of it can be told from being aborted.
    request.setTransferTimeout(0);
    if (const QByteArray cookies = cookieHeader(); !cookies.isEmpty()) {
        request.setRawHeader("Cookie", cookies);
    }
    // Left alone, the library takes a compressed body that was cut short for a whole one.
    if (!request.hasRawHeader("Accept-Encoding")) {
        request.setRawHeader("Accept-Encoding", "gzip");
    }
    m_newConnection = false;
    m_hop = m_transport.send(request, m_method, m_body);
    m_hop->setParent(this);
    m_hop->setReadBufferSize(readBufferSize());
    connectHop();
}

QByteArray FollowedReply::cookieHeader() const
{
    QByteArray header = m_request.rawHeader("Cookie");
    if (m_request.attribute(NetworkFactory::storedCookies).toBool()) {
        const QByteArray stored = m_transport.storedCookies(m_request.url());
        header += (header.isEmpty() || stored.isEmpty() ? QByteArray() : "; "_ba) + stored;
    }
    return header;
}

void FollowedReply::connectHop()
{
    connect(m_hop, &QNetworkReply::metaDataChanged, this, &FollowedReply::headArrived);
    connect(m_hop, &QNetworkReply::readyRead, this, &FollowedReply::dataArrived);
    connect(m_hop, &QNetworkReply::finished, this, &FollowedReply::hopEnded);
    connect(m_hop, &QNetworkReply::socketStartedConnecting, this, [this] { m_newConnection = true; });
    connect(m_hop, &QNetworkReply::encrypted, this, [this] {
        somethingMoved();
        Q_EMIT encrypted();
    });
    connect(m_hop, &QNetworkReply::downloadProgress, this, &QNetworkReply::downloadProgress);
    connect(m_hop, &QNetworkReply::uploadProgress, this, [this](qint64 done, qint64 total) {
        somethingMoved();
        Q_EMIT uploadProgress(done, total);
    });
    connect(m_hop, &QNetworkReply::sslErrors, this, [this](const QList<QSslError> &errors) {
        m_certificateErrors = errors;
        Q_EMIT sslErrors(errors);
    });
}

void FollowedReply::somethingMoved()
{
    if (m_idle.interval() > 0 && !m_ended) {
        m_idle.start();
    }
}

void FollowedReply::headArrived()
{
    somethingMoved();
    keepCookieSecrets(m_hop->rawHeader("Set-Cookie"));
    const int status = m_hop->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (isRedirect(status) && m_hop->hasRawHeader("Location")) {
        m_redirectTarget = m_hop->url().resolved(QUrl::fromEncoded(m_hop->rawHeader("Location")));
        return;
    }
    if (!m_request.hasRawHeader("Accept-Encoding") && isGzip(*m_hop)) {
        m_gzip.emplace();
    }
    setUrl(m_hop->url());
    for (const RawHeaderPair &header : m_hop->rawHeaderPairs()) {
        setRawHeader(header.first, header.second);
    }
    for (const auto attribute : {QNetworkRequest::HttpStatusCodeAttribute,
             QNetworkRequest::HttpReasonPhraseAttribute, QNetworkRequest::ConnectionEncryptedAttribute}) {
        setAttribute(attribute, m_hop->attribute(attribute));
    }
    Q_EMIT metaDataChanged();
}

void FollowedReply::dataArrived()
{
    somethingMoved();
    if (m_redirectTarget.isEmpty()) {
        Q_EMIT readyRead();
        return;
    }
    m_discarded += m_hop->readAll().size();
    if (m_discarded > redirectBodyLimit) {
        follow();
    }
}

void FollowedReply::hopEnded()
{
    if (!m_redirectTarget.isEmpty()) {
        follow();
        return;
    }
    const NetworkError error = m_hop->error();
    // The other side closed a connection that was kept from an earlier request: it has not seen this one.
    if (error == ContentReSendError && !m_newConnection && ++m_closedConnections <= mostKeptConnections) {
        dropHop();
        startHop();
        return;
    }
    const bool whole = !m_gzip || decompressRest();
    if (!whole && (error == NoError || isStatusError(error))) {
        end(m_gzip->isBroken() ? ProtocolFailure : RemoteHostClosedError,
            u"The compressed body is not whole"_s);
        return;
    }
    end(error, m_hop->errorString());
}

void FollowedReply::follow()
{
    const QUrl from = m_hop->url();
    const QUrl target = std::exchange(m_redirectTarget, {});
    const int status = m_hop->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    dropHop();
    m_discarded = 0;
    if (++m_redirects > m_request.maximumRedirectsAllowed()) {
        end(TooManyRedirectsError, u"Redirected %1 times"_s.arg(m_redirects));
        return;
    }
    if (!mayLead(from, target)) {
        end(InsecureRedirectError, u"Redirected to an address that is not secure"_s);
        return;
    }
    const bool keepsMethod = status == 307 || status == 308;
    m_request = requestAfterRedirect(target);
    if (!keepsMethod && m_method != "HEAD") {
        m_method = "GET"_ba;
        m_body.clear();
        m_request.setHeader(QNetworkRequest::ContentTypeHeader, {});
    }
    Q_EMIT redirected(m_request.url());
    startHop();
}

// What proves who the user is stays with the host it was meant for.
QNetworkRequest FollowedReply::requestAfterRedirect(const QUrl &target) const
{
    QNetworkRequest request = m_request;
    request.setUrl(target.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment));
    if (!sameOrigin(m_request.url(), target)) {
        request.setRawHeader("Cookie", {});
        request.setRawHeader("Authorization", {});
    }
    return request;
}

qint64 FollowedReply::bytesAvailable() const
{
    const qint64 arrived = m_hop != nullptr && m_redirectTarget.isEmpty() ? m_hop->bytesAvailable() : 0;
    return QNetworkReply::bytesAvailable() + m_rest.size() + arrived + (m_gzip ? m_gzip->pending() : 0);
}

void FollowedReply::setReadBufferSize(qint64 size)
{
    QNetworkReply::setReadBufferSize(size);
    if (m_hop != nullptr) {
        m_hop->setReadBufferSize(size);
    }
}

qint64 FollowedReply::readData(char *data, qint64 size)
{
    if (m_hop == nullptr || !m_redirectTarget.isEmpty()) {
        return m_ended ? -1 : 0;
    }
    if (!m_gzip) {
        return m_hop->isOpen() ? m_hop->read(data, size) : -1;
    }
    return m_ended && m_rest.isEmpty() ? -1 : readDecompressed(data, size);
}

qint64 FollowedReply::readDecompressed(char *data, qint64 size)
{
    if (!m_rest.isEmpty()) {
        const qint64 count = std::min(size, qint64(m_rest.size()));
        std::copy_n(m_rest.constData(), count, data);
        m_rest.remove(0, count);
        return count;
    }
    for (;;) {
        if (const qint64 count = m_gzip->read(data, size); count > 0) {
            return count;
        }
        const QByteArray more = m_gzip->isBroken() ? QByteArray() : m_hop->read(pieceSize);
        if (more.isEmpty()) {
            return 0;
        }
        m_gzip->add(more);
    }
}

// Only the end of the data tells whether it is whole, so it is looked at before the reply ends.
bool FollowedReply::decompressRest()
{
    QByteArray rest;
    QByteArray piece(pieceSize, Qt::Uninitialized);
    while (const qint64 count = readDecompressed(piece.data(), piece.size())) {
        rest.append(piece.constData(), count);
        if (rest.size() > restLimit) {
            return false;
        }
    }
    m_rest = rest;
    return m_gzip->isComplete() || m_gzip->isEmpty();
}

void FollowedReply::abort()
{
    end(OperationCanceledError, u"Operation canceled"_s);
}

// The last hop stays for what is still to be read from it, unless it is what gets ended here.
void FollowedReply::end(NetworkError error, const QString &text)
{
    if (m_ended) {
        return;
    }
    m_ended = true;
    m_idle.stop();
    if (m_hop != nullptr && !m_hop->isFinished()) {
        dropHop();
    }
    if (error != NoError) {
        setError(error, text);
        Q_EMIT errorOccurred(error);
    }
    setFinished(true);
    Q_EMIT finished();
}

// Not from within a signal of the hop: the library reports the error of an HTTP status after telling of the
// head, and warns when there is one already.
void FollowedReply::dropHop()
{
    m_hop->disconnect(this);
    QMetaObject::invokeMethod(m_hop, &QNetworkReply::abort, Qt::QueuedConnection);
    m_hop->deleteLater();
    m_hop = nullptr;
}

void FollowedReply::sslConfigurationImplementation(QSslConfiguration &configuration) const
{
    if (m_hop != nullptr) {
        configuration = m_hop->sslConfiguration();
    }
}

} // namespace brevok
