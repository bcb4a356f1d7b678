// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/ReplyDecoding.h"

#include "foundation/Log.h"
#include "foundation/Record.h"
#include "foundation/Texts.h"
#include "service/TransportErrors.h"

#include <QHash>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int emptyBodyCode = -1;

QString unexpectedResponse()
{
    return Texts::tr("Unexpected server response.");
}

BrevokError errorForStatus(int status)
{
    switch (status) {
    case 401:
        return replyError(status, Texts::tr("Wrong user name or password."));
    case 403:
        return replyError(
            status, Texts::tr("Insufficient rights to access Tolvane Brevok verification server."));
    case 404:
        return replyError(status,
            Texts::tr("The requested resource could not be found.\n"
                      "Server might be temporarily inaccessible."));
    default:
        return unexpectedReply(status);
    }
}

bool isReply(const QJsonDocument &document)
{
    return document.isArray() || (document.isObject() && isNumber(document.object().value("ErrorCode"_L1)));
}

} // namespace

std::optional<QJsonDocument> jsonObjectFromData(
    const QByteArray &data, int status, std::optional<BrevokError> *error)
{
    if (error == nullptr || *error) {
        return std::nullopt;
    }
    if (data.isEmpty()) {
        *error = replyError(emptyBodyCode, unexpectedResponse());
        return std::nullopt;
    }
    QJsonParseError parseError;
    QJsonDocument document = QJsonDocument::fromJson(data, &parseError);
    if (isReply(document)) {
        return mayHoldHalfCharacters(data) && document.isObject()
            ? QJsonDocument(wellFormed(document.object()).toObject())
            : document;
    }
    if (parseError.error != QJsonParseError::NoError) {
        logError(BrevokError{.domain = QString::fromLatin1(connectionErrorDomain),
            .code = parseError.error,
            .description = parseError.errorString(),
            .details = {{u"Offset"_s, QString::number(parseError.offset)}}});
    }
    *error = errorForStatus(status);
    return std::nullopt;
}

BrevokError unexpectedReply(int status)
{
    return replyError(status,
        status == 200
            ? unexpectedResponse()
            : Texts::tr("Server responded with HTTP code: %1.").arg(QString::asprintf("%.3d", status)));
}

QString localizedStringForStatusCode(int status)
{
    static const QHash<int, const char *> texts{{100, QT_TRANSLATE_NOOP("Brevok", "continue")},
        {101, QT_TRANSLATE_NOOP("Brevok", "switching protocols")},
        {200, QT_TRANSLATE_NOOP("Brevok", "no error")}, {201, QT_TRANSLATE_NOOP("Brevok", "created")},
        {202, QT_TRANSLATE_NOOP("Brevok", "accepted")},
        {203, QT_TRANSLATE_NOOP("Brevok", "non-authoritative information")},
        {204, QT_TRANSLATE_NOOP("Brevok", "no content")}, {205, QT_TRANSLATE_NOOP("Brevok", "reset content")},
        {206, QT_TRANSLATE_NOOP("Brevok", "partial content")},
        {300, QT_TRANSLATE_NOOP("Brevok", "multiple choices")},
        {301, QT_TRANSLATE_NOOP("Brevok", "moved permanently")}, {302, QT_TRANSLATE_NOOP("Brevok", "found")},
        {303, QT_TRANSLATE_NOOP("Brevok", "see other")}, {304, QT_TRANSLATE_NOOP("Brevok", "not modified")},
        {305, QT_TRANSLATE_NOOP("Brevok", "needs proxy")},
        {307, QT_TRANSLATE_NOOP("Brevok", "temporarily redirected")},
        {400, QT_TRANSLATE_NOOP("Brevok", "bad request")}, {401, QT_TRANSLATE_NOOP("Brevok", "unauthorized")},
        {402, QT_TRANSLATE_NOOP("Brevok", "payment required")},
        {403, QT_TRANSLATE_NOOP("Brevok", "forbidden")}, {404, QT_TRANSLATE_NOOP("Brevok", "not found")},
        {405, QT_TRANSLATE_NOOP("Brevok", "method not allowed")},
        {406, QT_TRANSLATE_NOOP("Brevok", "unacceptable")},
        {407, QT_TRANSLATE_NOOP("Brevok", "proxy authentication required")},
        {408, QT_TRANSLATE_NOOP("Brevok", "request timed out")},
        {409, QT_TRANSLATE_NOOP("Brevok", "conflict")},
        {410, QT_TRANSLATE_NOOP("Brevok", "no longer exists")},
        {411, QT_TRANSLATE_NOOP("Brevok", "length required")},
        {412, QT_TRANSLATE_NOOP("Brevok", "precondition failed")},
        {413, QT_TRANSLATE_NOOP("Brevok", "request too large")},
        {414, QT_TRANSLATE_NOOP("Brevok", "requested URL too long")},
        {415, QT_TRANSLATE_NOOP("Brevok", "unsupported media type")},
        {416, QT_TRANSLATE_NOOP("Brevok", "requested range not satisfiable")},
        {417, QT_TRANSLATE_NOOP("Brevok", "expectation failed")},
        {500, QT_TRANSLATE_NOOP("Brevok", "internal server error")},
        {501, QT_TRANSLATE_NOOP("Brevok", "unimplemented")},
        {502, QT_TRANSLATE_NOOP("Brevok", "bad gateway")},
        {503, QT_TRANSLATE_NOOP("Brevok", "service unavailable")},
        {504, QT_TRANSLATE_NOOP("Brevok", "gateway timed out")},
        {505, QT_TRANSLATE_NOOP("Brevok", "unsupported version")}};
    if (const char *text = texts.value(status)) {
        return Texts::tr(text);
    }
    switch (status / 100) {
    case 1:
        return Texts::tr("informational");
    case 2:
        return Texts::tr("success");
    case 3:
        return Texts::tr("redirected");
    case 4:
        return Texts::tr("client error");
    default:
        return Texts::tr("server error");
    }
}

QString sessionActionName(int action)
{
    switch (action) {
    case SessionSignin:
        return u"signin"_s;
    case SessionSignout:
        return u"signout"_s;
    default:
        return u"ready (something is very wrong!)"_s;
    }
}

ReplyVerdict verdictFor(qint64 errorCode, int action, bool sessionIdHeld, const QString &errorMessage)
{
    ReplyVerdict verdict;
    verdict.succeeded = errorCode == ServiceSuccess || errorCode == ServiceHandledAsSuccess;
    verdict.logged = !verdict.succeeded;
    switch (errorCode) {
    case ServiceSuccess:
    case ServiceHandledAsSuccess:
    case ServiceFailed:
    case ServiceLoggedOnly:
        break;
    case ServiceWrongPassword:
        verdict.message = Texts::tr("Wrong user name or password.");
        verdict.quiet = action == SessionSignout;
        break;
    case ServiceInvalidSession:
        verdict.message = Texts::tr("Invalid session Id. You have been logged out!\n"
                                    "Please try to sign-in again.");
        verdict.quiet = action == SessionSignin || action == SessionSignout || !sessionIdHeld;
        verdict.dropsSessionId = !verdict.quiet;
        break;
    case ServiceSecurityViolation:
        verdict.message = Texts::tr("Security Violation Error. You have been logged out!\n"
                                    "Please try to sign-in again.");
        verdict.quiet = action == SessionSignout;
        verdict.sendsSignout = !verdict.quiet;
        break;
    case ServiceInternalError:
        verdict.message = Texts::tr("Internal Server Error. Please contact Tolvane support.");
        break;
    default:
        verdict.message = orDash(errorMessage);
        break;
    }
    return verdict;
}

} // namespace brevok
