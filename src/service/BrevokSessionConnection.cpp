// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/BrevokSessionConnection.h"

#include "foundation/Log.h"
#include "foundation/Texts.h"
#include "service/Gzip.h"
#include "service/NetworkFactory.h"
#include "service/ReplyDecoding.h"
#include "service/ServerTrust.h"

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// Replies to session requests are a few hundred bytes; a service that sends without end is stopped here.
constexpr qint64 bodyLimit = qint64{8} * 1024 * 1024;
constexpr int tooLongCode = -1103; // the platform's "data length exceeds maximum"
constexpr int redirectedAwayCode = -1010; // the platform's "redirect to a location that does not exist"

QString addressText(const QUrl &url)
{
    return url.toString(QUrl::RemovePassword | QUrl::FullyEncoded);
}

bool sameOrigin(const QUrl &a, const QUrl &b)
{
    constexpr int httpsPort = 443;
    return a.scheme() == b.scheme() && a.host() == b.host() && a.port(httpsPort) == b.port(httpsPort);
}

BrevokError transportFailure(int code, const QString &description)
{
    return {.domain = QString::fromLatin1(transportErrorDomain), .code = code, .description = description};
}

// Everything but what must stay secret: no body (it holds the password) and no cookie.
void logRequest(const SessionRequest &sent)
{
    logLine(u"Session request: %1 %2, %3 bytes"_s.arg(QString::fromLatin1(sent.method),
        addressText(sent.request.url()), QString::number(sent.body.size())));
    const QList<QByteArray> names = sent.request.rawHeaderList();
    for (const QByteArray &name : names) {
        const bool secret = name.compare("Cookie", Qt::CaseInsensitive) == 0;
        logLine(u"  %1: %2"_s.arg(QString::fromLatin1(name),
            secret ? u"(not logged)"_s : QString::fromLatin1(sent.request.rawHeader(name))));
    }
}

} // namespace

QByteArray SessionResponse::header(const QByteArray &name) const
{
    const auto found = std::find_if(headerFields.cbegin(), headerFields.cend(),
        [&name](const auto &field) { return field.first.compare(name, Qt::CaseInsensitive) == 0; });
    return found == headerFields.cend() ? QByteArray() : found->second;
}

BrevokSessionConnection::BrevokSessionConnection(
    NetworkFactory &network, const SessionRequest &request, int sessionAction, QObject *parent)
    : QObject(parent)
    , status(sessionAction)
    , originalRequest2(request)
    , m_reply(network.send(request.request, request.method, request.body))
{
    if (detailedLog()) {
        logRequest(request);
    }
    m_reply->setParent(this);
    answerChallenges(*m_reply, request.request.url(), network.configuration().baseUrl.host());
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &BrevokSessionConnection::didReceiveResponse);
    connect(m_reply, &QNetworkReply::redirected, this, &BrevokSessionConnection::didRedirect);
    connect(m_reply, &QNetworkReply::readyRead, this, &BrevokSessionConnection::didReceiveData);
    connect(m_reply, &QNetworkReply::finished, this, &BrevokSessionConnection::didEnd);
}

BrevokSessionConnection::~BrevokSessionConnection()
{
    m_reply->disconnect(this);
}

// A redirect may keep the body, and with it the password: no other host gets it.
void BrevokSessionConnection::didRedirect(const QUrl &target)
{
    if (!sameOrigin(target, originalRequest2.request.url())) {
        stop(transportFailure(
            redirectedAwayCode, Texts::tr("The server redirected the request to another server.")));
    }
}

// A second head, as after a redirect, discards what came before.
void BrevokSessionConnection::didReceiveResponse()
{
    const QVariant code = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!code.isValid()) {
        return;
    }
    responseHTTP = SessionResponse{m_reply->url(), code.toInt(), m_reply->rawHeaderPairs()};
    if (responseHTTP->statusCode != 200) {
        logLine(u"Session connection to: \"%1\" failed with response: %2 - %3"_s.arg(
            addressText(responseHTTP->url), QString::asprintf("%.3d", responseHTTP->statusCode),
            localizedStringForStatusCode(responseHTTP->statusCode)));
    }
    responseData.clear();
}

void BrevokSessionConnection::didReceiveData()
{
    responseData += m_reply->readAll();
    if (responseData.size() > bodyLimit) {
        stop(transportFailure(tooLongCode, Texts::tr("The server sent more data than expected.")));
    }
}

void BrevokSessionConnection::didEnd()
{
    if (m_settled) {
        return;
    }
    if (!responseError) {
        responseError = NetworkFactory::transportError(*m_reply);
    }
    if (responseError) {
        m_settled = true;
        Q_EMIT didFailWithError(this, *responseError);
        return;
    }
    if (m_reply->isOpen()) {
        responseData += m_reply->readAll();
    }
    // The transport leaves the body compressed when the request itself names the encodings. What does not
    // decompress stays as it is, and is then no reply.
    if (responseHTTP && responseHTTP->header("Content-Encoding").trimmed().toLower() == "gzip") {
        if (const std::optional<QByteArray> plain = gunzip(responseData, bodyLimit)) {
            responseData = *plain;
        }
    }
    m_settled = true;
    if (detailedLog() && responseHTTP) {
        logLine(u"Session reply: %1 with %2 bytes"_s.arg(responseHTTP->statusCode).arg(responseData.size()));
    }
    Q_EMIT didFinishLoading(this);
}

// What a user is shown about it must not come while data still arrives.
void BrevokSessionConnection::stop(const BrevokError &error)
{
    responseError = error;
    m_reply->abort();
}

} // namespace brevok
