// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/TransportErrors.h"

#include "foundation/Texts.h"

#include <QLocale>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// What a file expected decides, not the connection.
BrevokError lengthError(const HttpReply &reply, const HttpRequest &request)
{
    const qint64 expected = request.expectedSize;
    const QLocale locale;
    if (reply.failure == HttpFailure::BodyTooShort) {
        return replyError(reply.status,
            Texts::tr("The download has %1 of the expected %2 bytes.")
                .arg(locale.toString(reply.received), locale.toString(expected)),
            request.url);
    }
    return request.destination.isEmpty()
        ? replyError(-1, Texts::tr("The server sent more data than expected."), request.url)
        : replyError(reply.status,
            Texts::tr("The download is longer than the expected %1 bytes.").arg(locale.toString(expected)),
            request.url);
}

BrevokError fileError(const HttpReply &reply, const HttpRequest &request)
{
    return {.domain = QString::fromLatin1(fileErrorDomain),
        .code = reply.code,
        .description = Texts::tr("The downloaded file cannot be saved: %1").arg(reply.reason),
        .details = {{u"Path"_s, request.destination}}};
}

struct Wording {
    int code;
    QString text;
};

Wording wordingOf(HttpFailure failure, const QString &reason)
{
    switch (failure) {
    case HttpFailure::TimedOut:
        return {timedOutCode, Texts::tr("The request timed out.")};
    case HttpFailure::TooSlow: // told apart, as this is no reason to send it again
        return {TransportTooSlow, Texts::tr("The request timed out.")};
    case HttpFailure::HostNotFound:
        return {TransportHostNotFound, Texts::tr("A server with the specified hostname could not be found.")};
    case HttpFailure::CannotConnect:
        return {TransportCannotConnect, Texts::tr("Could not connect to the server.")};
    case HttpFailure::ProxyUnreachable:
        return {TransportCannotConnect, Texts::tr("Could not connect to the proxy server.")};
    case HttpFailure::ConnectionLost:
        return {TransportConnectionLost, Texts::tr("The network connection was lost.")};
    case HttpFailure::NoSecureConnection:
        return {TransportSecureConnectionFailed,
            Texts::tr("A secure connection to the server could not be established: %1").arg(reason)};
    case HttpFailure::CertificateUntrusted:
        return {TransportCertificateUntrusted,
            Texts::tr("The server's certificate is not trusted: %1").arg(reason)};
    case HttpFailure::NoHttp:
        return {TransportBadReply, Texts::tr("Unexpected server response.")};
    case HttpFailure::NotDecodable:
        return {TransportNotDecodable, Texts::tr("Unexpected server response.")};
    case HttpFailure::HeadTooLong:
        return {TransportTooLong, Texts::tr("The server sent more data than expected.")};
    default:
        return {TransportUnknown, Texts::tr("The transfer failed: %1").arg(reason)};
    }
}

} // namespace

QString addressText(const QUrl &url)
{
    return url.toString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment | QUrl::FullyEncoded);
}

BrevokError transportError(int code, const QString &description, const QUrl &url)
{
    return {.domain = QString::fromLatin1(transportErrorDomain),
        .code = code,
        .description = description,
        .details = {{u"URL"_s, addressText(url)}}};
}

BrevokError transportErrorFor(const HttpReply &reply, const HttpRequest &request)
{
    switch (reply.failure) {
    case HttpFailure::BodyTooLong:
    case HttpFailure::BodyTooShort:
        return lengthError(reply, request);
    case HttpFailure::OtherChecksum:
        return replyError(reply.status, Texts::tr("The download does not match the catalogue."), request.url);
    case HttpFailure::NotStored:
        return fileError(reply, request);
    default:
        break;
    }
    const Wording wording = wordingOf(reply.failure, reply.reason);
    BrevokError error = transportError(wording.code, wording.text, request.url);
    error.details.insert(u"Reason"_s, reply.reason);
    return error;
}

BrevokError replyError(int code, const QString &description, const QUrl &url)
{
    BrevokError error{
        .domain = QString::fromLatin1(connectionErrorDomain), .code = code, .description = description};
    if (!url.isEmpty()) {
        error.details.insert(u"URL"_s, addressText(url));
    }
    return error;
}

} // namespace brevok
