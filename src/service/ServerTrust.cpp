// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/ServerTrust.h"

#include "foundation/Log.h"
#include "foundation/Record.h"
#include "service/TransportErrors.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int defaultHttpsPort = 443;

QString yesOrNo(bool value)
{
    return value ? u"YES"_s : u"NO"_s;
}

void logDump(const ProtectionSpace &space)
{
    for (const QString &line : protectionSpaceDump(space)) {
        logLine(line);
    }
}

// The first challenge of a connection to @p url.
TrustChallenge firstChallenge(const QUrl &url)
{
    return {.space = {.receivesCredentialSecurely = true,
                .host = url.host(),
                .port = url.port(defaultHttpsPort),
                .protocol = url.scheme(),
                .authenticationMethod = QString::fromLatin1(serverTrustMethod)},
        .hasServerTrust = true};
}

} // namespace

bool canAuthenticateAgainst(const ProtectionSpace &space)
{
    return space.authenticationMethod == QLatin1StringView(serverTrustMethod);
}

ChallengeAnswer decide(const TrustChallenge &challenge, const QString &serviceHost)
{
    switch (challenge.previousFailureCount) {
    case 0:
        return ChallengeAnswer::DefaultHandling;
    case 1:
        return challenge.hasProposedCredential ? ChallengeAnswer::UseProposed : ChallengeAnswer::NoAnswer;
    case 2:
        return canAuthenticateAgainst(challenge.space) && challenge.space.host == serviceHost
                && challenge.hasServerTrust
            ? ChallengeAnswer::UseServerTrust
            : ChallengeAnswer::NoAnswer;
    default:
        return ChallengeAnswer::ContinueWithout;
    }
}

QStringList protectionSpaceDump(const ProtectionSpace &space)
{
    return {u"  realm:                      "_s + orDash(space.realm),
        u"  receivesCredentialSecurely: "_s + yesOrNo(space.receivesCredentialSecurely),
        u"  isProxy:                    "_s + yesOrNo(space.isProxy),
        u"  host:                       "_s + orDash(space.host),
        u"  port:                       "_s + QString::asprintf("%.3d", space.port),
        u"  proxyType:                  "_s + orDash(space.proxyType),
        u"  protocol:                   "_s + orDash(space.protocol),
        u"  authenticationMethod:       "_s + orDash(space.authenticationMethod)};
}

void logChallenge(
    const TrustChallenge &challenge, ChallengeAnswer answer, const QUrl &currentUrl, const QUrl &originalUrl)
{
    const bool detailed = detailedLog();
    if (detailed) {
        logLine(u"Called connection:canAuthenticateAgainstProtectionSpace:"_s);
        logLine(u"originalRequest: "_s + addressText(originalUrl));
        logDump(challenge.space);
        logLine(u"Called connection:didReceiveAuthenticationChallenge:"_s);
        logLine(u"currentRequest:  "_s + addressText(currentUrl));
        logLine(u"originalRequest: "_s + addressText(originalUrl));
    }
    if (challenge.previousFailureCount != 0) {
        logLine(u"Failed challenge nr. %1"_s.arg(challenge.previousFailureCount));
    }
    if (!detailed) {
        return;
    }
    logDump(challenge.space);
    logLine(u"  proposedCredential:       "_s + yesOrNo(challenge.hasProposedCredential));
    logLine(u"  credentialForTrust:       "_s + yesOrNo(challenge.hasServerTrust));
    if (answer == ChallengeAnswer::UseProposed || answer == ChallengeAnswer::UseServerTrust) {
        logLine(u"Trying to use credential..."_s);
    }
}

void logFirstChallenge(const QUrl &currentUrl, const QUrl &originalUrl, const QString &serviceHost)
{
    const TrustChallenge challenge = firstChallenge(currentUrl);
    logChallenge(challenge, decide(challenge, serviceHost), currentUrl, originalUrl);
}

} // namespace brevok
