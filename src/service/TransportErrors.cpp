// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/TransportErrors.h"

#include "foundation/Texts.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// Queries may carry secrets, and errors are logged.
QString addressOf(const QUrl &url)
{
    return url.toString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
}

BrevokError errorOf(int code, const QString &description, const QUrl &url, const QString &reason)
{
    QString text = reason;
    text.replace(url.toString(), addressOf(url));
    return {.domain = QString::fromLatin1(transportErrorDomain),
        .code = code,
        .description = description,
        .details = {{u"URL"_s, addressOf(url)}, {u"Reason"_s, text}}};
}

} // namespace

bool isStatusError(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::ContentAccessDenied:
    case QNetworkReply::ContentOperationNotPermittedError:
    case QNetworkReply::ContentNotFoundError:
    case QNetworkReply::ContentReSendError:
    case QNetworkReply::ContentConflictError:
    case QNetworkReply::ContentGoneError:
    case QNetworkReply::AuthenticationRequiredError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
    case QNetworkReply::UnknownContentError:
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::InternalServerError:
    case QNetworkReply::OperationNotImplementedError:
    case QNetworkReply::ServiceUnavailableError:
    case QNetworkReply::UnknownServerError:
        return true;
    default:
        return false;
    }
}

BrevokError transportErrorFor(QNetworkReply::NetworkError error, const QUrl &url, const QString &reason)
{
    switch (error) {
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return errorOf(timedOutCode, Texts::tr("The request timed out."), url, reason);
    case QNetworkReply::HostNotFoundError:
        return errorOf(TransportHostNotFound,
            Texts::tr("A server with the specified hostname could not be found."), url, reason);
    case QNetworkReply::ConnectionRefusedError:
        return errorOf(TransportCannotConnect, Texts::tr("Could not connect to the server."), url, reason);
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyNotFoundError:
    case QNetworkReply::ProxyConnectionClosedError:
        return errorOf(
            TransportCannotConnect, Texts::tr("Could not connect to the proxy server."), url, reason);
    case QNetworkReply::ContentReSendError: // the connection broke, and a body is sent only once
    case QNetworkReply::RemoteHostClosedError:
        return errorOf(TransportConnectionLost, Texts::tr("The network connection was lost."), url, reason);
    case QNetworkReply::TooManyRedirectsError:
        return errorOf(TransportTooManyRedirects, Texts::tr("Too many HTTP redirects."), url, reason);
    case QNetworkReply::SslHandshakeFailedError:
        return errorOf(TransportSecureConnectionFailed,
            Texts::tr("A secure connection to the server cannot be made: %1").arg(reason), url, reason);
    case QNetworkReply::OperationCanceledError:
        return errorOf(TransportCancelled, Texts::tr("The request was cancelled."), url, reason);
    default:
        return errorOf(TransportUnknown, Texts::tr("The transfer failed: %1").arg(reason), url, reason);
    }
}

BrevokError certificateError(const QUrl &url, const QString &reason)
{
    return errorOf(TransportCertificateUntrusted,
        Texts::tr("The certificate of the server is not trusted: %1").arg(reason), url, reason);
}

BrevokError replyError(int code, const QString &description, const QUrl &url)
{
    return {.domain = QString::fromLatin1(connectionErrorDomain),
        .code = code,
        .description = description,
        .details = {{u"URL"_s, addressOf(url)}}};
}

} // namespace brevok
