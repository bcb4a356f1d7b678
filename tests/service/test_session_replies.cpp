// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Log.h"
#include "service/ReplyDecoding.h"
#include "service/ServerTrust.h"
#include "service/UrlEncode.h"
#include "support/FolderTest.h"
#include "support/LogCapture.h"
#include "support/Table.h"

#include <QScopeGuard>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

class TestSessionReplies final : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    // The code of what is accepted is 0.
    void decoding_data()
    {
        const Table<QByteArray, int, int, QString, bool> row;
        const QString unexpected = u"Unexpected server response."_s;

        row("boolean code", R"({"ErrorCode":false})", 200, 0, {}, false);
        row("fraction", R"({"ErrorCode":1.5})", 200, 0, {}, false);
        row("array", "[]", 200, 0, {}, false);
        row("empty body", "", 404, -1, unexpected, false);
        row("no code", R"({"SessionId":"x"})", 200, 200, unexpected, false);
        row("code as text", R"({"ErrorCode":"0"})", 200, 200, unexpected, false);
        row("fragment", "7", 200, 200, unexpected, true);
        row("garbage", "<html>", 200, 200, unexpected, true);
        row("401", "no", 401, 401, u"Wrong user name or password."_s, true);
        row("403", "{}", 403, 403, u"Insufficient rights to access Tolvane Brevok verification server."_s,
            false);
        row("404", "{}", 404, 404,
            u"The requested resource could not be found.\nServer might be temporarily inaccessible."_s,
            false);
        row("500", "no", 500, 500, u"Server responded with HTTP code: 500."_s, true);
        row("short status", "{}", 7, 7, u"Server responded with HTTP code: 007."_s, false);
    }

    void decoding()
    {
        const auto [body, status, code, message, logsParseError] =
            columns<QByteArray, int, int, QString, bool>();
        const LogCapture log;
        std::optional<BrevokError> error;
        const auto document = jsonObjectFromData(body, status, &error);
        QCOMPARE(document.has_value(), code == 0);
        QCOMPARE(error.has_value(), code != 0);
        QCOMPARE(LogCapture::mentions(u"Error: "_s), logsParseError);
        if (error) {
            QCOMPARE(error->code, code);
            QCOMPARE(error->description, message);
            QCOMPARE(error->domain, QString::fromLatin1(connectionErrorDomain));
        }
    }

    void decodingNeedsAnEmptySlot()
    {
        QVERIFY(!jsonObjectFromData("[]", 200, nullptr));
        std::optional<BrevokError> error = BrevokError{.code = 42};
        QVERIFY(!jsonObjectFromData("[]", 200, &error));
        QCOMPARE(error->code, 42);
    }

    // S succeeded, L logged, Q quiet, D drops the id, O signs out.
    void verdicts_data()
    {
        const Table<int, int, bool, QString, QByteArray> row;
        const QString password = u"Wrong user name or password."_s;
        const QString session =
            u"Invalid session Id. You have been logged out!\nPlease try to sign-in again."_s;
        const QString security =
            u"Security Violation Error. You have been logged out!\nPlease try to sign-in again."_s;
        constexpr int other = 7;

        row("0", 0, SessionSignin, false, {}, "S");
        row("1", 1, SessionSignin, false, {}, "L");
        row("2 sign in", 2, SessionSignin, false, password, "L");
        row("2 sign out", 2, SessionSignout, true, password, "LQ");
        row("2 other", 2, other, true, password, "L");
        row("3 sign in", 3, SessionSignin, true, session, "LQ");
        row("3 sign out", 3, SessionSignout, true, session, "LQ");
        row("3 other", 3, other, true, session, "LD");
        row("3 other, signed out", 3, other, false, session, "LQ");
        row("8", 8, SessionSignin, false, {}, "L");
        row("9", 9, SessionSignin, false, {}, "S");
        row("98 sign in", 98, SessionSignin, false, security, "LO");
        row("98 sign out", 98, SessionSignout, true, security, "LQ");
        row("98 other", 98, other, true, security, "LO");
        row("99", 99, SessionSignout, true, u"Internal Server Error. Please contact Tolvane support."_s, "L");
        for (const int code : {10, 97, 100, -1}) {
            row(QByteArray::number(code), code, SessionSignin, false, u"told"_s, "L");
        }
    }

    void verdicts()
    {
        const auto [code, action, held, message, expected] = columns<int, int, bool, QString, QByteArray>();
        const ReplyVerdict verdict = verdictFor(code, action, held, u"told"_s);
        QCOMPARE(verdict.message, message);
        QByteArray traits;
        traits += verdict.succeeded ? "S" : "";
        traits += verdict.logged ? "L" : "";
        traits += verdict.quiet ? "Q" : "";
        traits += verdict.dropsSessionId ? "D" : "";
        traits += verdict.sendsSignout ? "O" : "";
        QCOMPARE(traits, expected);
        if (code >= 10 && code < 98) {
            QCOMPARE(verdictFor(code, action, held, {}).message, u"-"_s);
        }
    }

    void challenges_data()
    {
        const Table<int, bool, QString, QString, ChallengeAnswer> row;
        const QString trust = QString::fromLatin1(serverTrustMethod);
        const QString service = u"service.example"_s;

        row("first", 0, true, trust, service, ChallengeAnswer::DefaultHandling);
        row("proposed", 1, true, trust, service, ChallengeAnswer::UseProposed);
        row("nothing proposed", 1, false, trust, service, ChallengeAnswer::NoAnswer);
        row("trust", 2, false, trust, service, ChallengeAnswer::UseServerTrust);
        row("other host", 2, true, trust, u"evil.example"_s, ChallengeAnswer::NoAnswer);
        row("other letter case", 2, true, trust, u"SERVICE.example"_s, ChallengeAnswer::NoAnswer);
        row("other method", 2, true, u"Basic"_s, service, ChallengeAnswer::NoAnswer);
        row("third failure", 3, true, trust, service, ChallengeAnswer::ContinueWithout);
    }

    void challenges()
    {
        const auto [failures, proposed, method, host, answer] =
            columns<int, bool, QString, QString, ChallengeAnswer>();
        const TrustChallenge challenge{.space = {.host = host, .authenticationMethod = method},
            .previousFailureCount = failures,
            .hasProposedCredential = proposed,
            .hasServerTrust = true};
        QCOMPARE(decide(challenge, u"service.example"_s), answer);
        QCOMPARE(canAuthenticateAgainst(challenge.space), method != "Basic"_L1);
    }

    void challengeLog()
    {
        const LogCapture log;
        const QUrl url(u"https://service.example/a"_s);
        const TrustChallenge challenge{.space = {.isProxy = true, .host = u"h"_s, .port = 7},
            .previousFailureCount = 1,
            .hasProposedCredential = true};
        logChallenge({}, ChallengeAnswer::DefaultHandling, url, url);
        QCOMPARE(LogCapture::lines(), QStringList());
        logChallenge(challenge, ChallengeAnswer::UseProposed, url, url);
        QCOMPARE(LogCapture::lines(), QStringList{u"Failed challenge nr. 1"_s});
        LogCapture::clear();

        const auto quiet = qScopeGuard([] { setLogLevel(0); });
        setLogLevel(1);
        logChallenge(challenge, ChallengeAnswer::UseProposed, url, url);
        const QStringList dump{u"  realm:                      -"_s, u"  receivesCredentialSecurely: NO"_s,
            u"  isProxy:                    YES"_s, u"  host:                       h"_s,
            u"  port:                       007"_s, u"  proxyType:                  -"_s,
            u"  protocol:                   -"_s, u"  authenticationMethod:       -"_s};
        QCOMPARE(LogCapture::lines(),
            QStringList({u"Called connection:canAuthenticateAgainstProtectionSpace:"_s,
                u"originalRequest: https://service.example/a"_s})
                + dump
                + QStringList({u"Called connection:didReceiveAuthenticationChallenge:"_s,
                    u"currentRequest:  https://service.example/a"_s,
                    u"originalRequest: https://service.example/a"_s, u"Failed challenge nr. 1"_s})
                + dump
                + QStringList({u"  proposedCredential:       YES"_s, u"  credentialForTrust:       NO"_s,
                    u"Trying to use credential..."_s}));
    }

    void formEncoding()
    {
        QCOMPARE(urlencode(u"azAZ09.-_~"_s), u"azAZ09.-_~"_s);
        QCOMPARE(urlencode(u"a b+c"_s), u"a+b%2Bc"_s);
        QCOMPARE(urlencode(u"%20 %"_s), u"%2520+%25"_s);
        QCOMPARE(
            urlencode(u"!*'();:@&=$,/?#[]\n"_s), u"%21%2A%27%28%29%3B%3A%40%26%3D%24%2C%2F%3F%23%5B%5D%0A"_s);
        QCOMPARE(urlencode(u"é€\U0001F600"_s), u"%C3%A9%E2%82%AC%F0%9F%98%80"_s);
    }
};

QTEST_GUILESS_MAIN(TestSessionReplies)
#include "test_session_replies.moc"
