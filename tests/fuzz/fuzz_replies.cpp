// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Record.h"
#include "foundation/UntrustedText.h"
#include "fuzz/Fuzz.h"
#include "platform/linux/network/Gunzip.h"
#include "service/ReplyDecoding.h"
#include "service/ServiceCookies.h"

#include <QUrl>

#include <algorithm>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

// What comes out of @p data, however it is cut on its way.
std::optional<QByteArray> gunzipped(const QByteArray &data, qsizetype pieces)
{
    constexpr qsizetype most = 8LL * 1024 * 1024;
    QByteArray whole;
    Gunzip gunzip([&](QByteArrayView piece) {
        whole += piece;
        return whole.size() <= most;
    });
    for (qsizetype at = 0; at < data.size(); at += pieces) {
        if (!gunzip.add(QByteArrayView(data).sliced(at, std::min(pieces, data.size() - at)))) {
            return std::nullopt;
        }
    }
    return gunzip.isWhole() ? std::optional(whole) : std::nullopt;
}

void checkHeaders(const QByteArray &lines)
{
    HeaderFields fields;
    for (const QByteArray &line : lines.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        fields.append({line.first(std::max(colon, qsizetype(0))), line.sliced(colon + 1).trimmed()});
    }
    ServiceCookies cookies;
    cookies.take(fields, QUrl(u"https://service.example/api/x"_s));
    for (const QString &address : {u"https://service.example/api/x"_s, u"https://service.example/"_s}) {
        const QByteArray header = cookies.headerFor(QUrl(address));
        HOLDS(header.size() <= 8192 && isHarmless(QString::fromUtf8(header)));
        HOLDS(!header.startsWith("SessionId=") && !header.contains("; SessionId="));
    }
}

void checkReply(const QByteArray &body, int status)
{
    std::optional<BrevokError> error;
    const std::optional<QJsonDocument> reply = jsonObjectFromData(body, status, &error);
    HOLDS(reply.has_value() != error.has_value());
    if (error) {
        HOLDS(!error->description.isEmpty() && error->code == (body.isEmpty() ? -1 : status));
        return;
    }
    const Record record = reply->object();
    HOLDS(reply->isArray() || isNumber(record.value("ErrorCode"_L1)));
    HOLDS(reply->isArray() || wellFormed(record) == QJsonValue(record));
    const qint64 code = integerValue(record.value("ErrorCode"_L1));
    for (const int action : {SessionSignin, SessionSignout, SessionReady}) {
        const ReplyVerdict verdict =
            verdictFor(code, action, true, record.value("ErrorMessage"_L1).toString());
        HOLDS(verdict.succeeded == (code == 0 || code == 9) && verdict.logged != verdict.succeeded);
        HOLDS(!verdict.succeeded || verdict.message.isNull());
        HOLDS(!verdict.dropsSessionId || code == ServiceInvalidSession);
        HOLDS(!verdict.sendsSignout || (code == ServiceSecurityViolation && action != SessionSignout));
    }
}

} // namespace

// The status, the headers, and the body, which may be gzip.
void fuzz::check(const QByteArray &input)
{
    const QList<QByteArray> all = parts(input, 3);
    const int status = all[0].trimmed().toInt();
    HOLDS(!localizedStringForStatusCode(status).isEmpty() && !unexpectedReply(status).description.isEmpty());
    checkHeaders(all[1]);
    const std::optional<QByteArray> unpacked = gunzipped(all[2], 7);
    HOLDS(unpacked == gunzipped(all[2], all[2].size() + 1));
    checkReply(unpacked.value_or(all[2]), status);
}
