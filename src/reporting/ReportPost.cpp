// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "reporting/ReportPost.h"

#include "foundation/Record.h"
#include "foundation/Texts.h"
#include "service/NetworkFactory.h"
#include "service/ReplyDecoding.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 longestAnswer = 256LL * 1024;

} // namespace

void sendReport(
    NetworkFactory &network, const ReportPost &post, QObject *context, ServiceClient::ReplyHandler handler)
{
    ExchangeRequest request = network.request(network.configuration().url(post.path));
    request.method = "POST"_ba;
    request.headers = {{"Content-Type", "application/json"}, {"Accept", "application/json"},
        {versionHeader, versionHeaderValue}};
    request.body = post.body;
    request.cookies = CookieRule::Take;
    request.logsChallenges = true;
    request.limits.bodyBytes = longestAnswer;
    if (!post.sessionId.isEmpty()) {
        request.headers.append({"Cookie", "SessionId=" + post.sessionId.toUtf8()});
        request.cookies = CookieRule::TakeAndSend;
    }
    network.send(request, context, std::move(handler));
}

QString statusText(int status)
{
    const QString text = localizedStringForStatusCode(status);
    return u"%1 - %2"_s.arg(QString::asprintf("%.3d", status), text.isEmpty() ? Texts::tr("Unknown") : text);
}

} // namespace brevok
