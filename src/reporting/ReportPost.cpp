// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "reporting/ReportPost.h"

#include "foundation/Record.h"
#include "foundation/Texts.h"
#include "service/NetworkFactory.h"
#include "service/ReplyCollector.h"
#include "service/ReplyDecoding.h"
#include "service/ServerTrust.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 longestAnswer = 256LL * 1024;
constexpr int longestExchangeMs = 600000;

} // namespace

void sendReport(
    NetworkFactory &network, const ReportPost &post, QObject *context, ServiceClient::ReplyHandler handler)
{
    const QUrl url = network.configuration().url(post.path);
    QNetworkRequest request = network.request(url);
    request.setRawHeader("Content-Type", "application/json");
    request.setRawHeader("Accept", "application/json");
    request.setRawHeader(versionHeader, versionHeaderValue);
    if (!post.sessionId.isEmpty()) {
        request.setAttribute(NetworkFactory::storedCookies, true);
        request.setRawHeader("Cookie", "SessionId=" + post.sessionId.toUtf8());
    }
    QNetworkReply *reply = network.send(request, "POST", post.body);
    answerChallenges(*reply, url, network.configuration().baseUrl.host());
    new ReplyCollector(reply, longestAnswer, longestExchangeMs, context, std::move(handler), context);
}

QString statusText(int status)
{
    const QString text = localizedStringForStatusCode(status);
    return u"%1 - %2"_s.arg(QString::asprintf("%.3d", status), text.isEmpty() ? Texts::tr("Unknown") : text);
}

} // namespace brevok
