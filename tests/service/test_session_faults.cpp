// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Log.h"
#include "SessionStage.h"
#include "support/FolderTest.h"
#include "support/Table.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Stage = SessionStage;

class TestSessionFaults final : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void unreachable_data() { addRows({"told", "silent"}); }

    void unreachable()
    {
        const bool verbose = currentRow() == u"told"_s;
        Stage stage(20000, Stage::signedIn());
        stage.routes.flags.reset();
        stage.session->connectToURL(
            stage.server.url(signoutPath), u"POST"_s, SessionSignout, true, false, {}, verbose);
        QCOMPARE(stage.ended, 0);
        QCOMPARE(stage.changed, 1);
        QCOMPARE(stage.shownText(0),
            verbose ? u"Connection Error|Network is unreachable. Is your internet connection down?"_s
                    : QString());
        QTRY_COMPARE(stage.ended, 1);
        QVERIFY(!stage.succeeded && stage.told.startsWith(u"Network is unreachable"_s));
        QCOMPARE(stage.session->sessionId(), u"held-id"_s);
        QVERIFY(stage.server.requests().isEmpty());
    }

    void silentServerIsAskedThrice()
    {
        Stage stage(2000, Stage::signedIn());
        stage.server.on(signoutPath, Response::silent());
        bool updatingWhileTold = false;
        stage.presenter.whileShown = [&](const AlertContent &) {
            updatingWhileTold = stage.session->isUpdating();
        };
        stage.session->signout();
        QTRY_VERIFY_WITH_TIMEOUT(stage.ended == 1 && !stage.session->isUpdating(), 60000);
        QVERIFY(!stage.succeeded && updatingWhileTold);
        QCOMPARE(stage.server.requests(signoutPath).size(), 3);
        QCOMPARE(stage.server.requests().at(2).headers, stage.server.requests().at(0).headers);
        QCOMPARE(stage.presenter.shown.size(), 1);
        QCOMPARE(LogCapture::count(u"Session connection to: \"%1\" failed!"_s.arg(
                     stage.server.url(signoutPath).toString())),
            3);
        QCOMPARE(stage.changed, 4);
        QCOMPARE(stage.session->sessionId(), u"held-id"_s); // no reply handler ran
    }

    void lastTryCounts()
    {
        Stage stage(2000);
        stage.server.on(signinPath, [&](const Request &) {
            return stage.server.requests().size() < 3 ? Response::silent()
                                                      : Response::ok(R"({"ErrorCode":0,"SessionId":"late"})");
        });
        stage.request(SessionSignin);
        QTRY_COMPARE_WITH_TIMEOUT(stage.ended, 1, 60000);
        QVERIFY(stage.succeeded);
        QCOMPARE(stage.session->sessionId(), u"late"_s);
        QVERIFY(stage.presenter.shown.isEmpty());
    }

    void brokenTransfers_data()
    {
        const Table<Response> row;
        const QByteArray body = R"({"ErrorCode":0,"SessionId":"id"})";
        row("cut short", Response{.body = body, .fault = Response::Fault::Close, .faultAfter = 10});
        row("endless", Response{.body = QByteArray(1024, ' '), .repeat = qint64{1024} * 1024});
        row("redirect loop", Response::redirect(signinPath.toLatin1(), 307));
    }

    void brokenTransfers()
    {
        const auto [response] = columns<Response>();
        Stage stage(20000, Stage::signedIn());
        stage.server.on(signinPath, response);
        stage.request(SessionSignin);
        QTRY_VERIFY_WITH_TIMEOUT(stage.ended == 1 && !stage.session->isUpdating(), 20000);
        QVERIFY(!stage.succeeded);
        QVERIFY(!stage.told.isEmpty());
        QCOMPARE(stage.presenter.shown.size(), 1);
        QCOMPARE(stage.presenter.shown.at(0).messageText, stage.told);
        QCOMPARE(stage.session->sessionId(), u"held-id"_s);
    }

    void certificates()
    {
        setLogLevel(1);
        Stage stage(20000, {}, TestCertificates::shared().expired());
        stage.server.on(signinPath, Response::ok(R"({"ErrorCode":0,"SessionId":"id"})"));
        stage.request(SessionSignin);
        QTRY_VERIFY(stage.ended == 1 && !stage.session->isUpdating());
        QVERIFY(!stage.succeeded);
        QVERIFY(stage.server.requests().isEmpty()); // the password never left
        QCOMPARE(stage.presenter.shown.size(), 1);
        QCOMPARE(LogCapture::count(u"Called connection:didReceiveAuthenticationChallenge:"_s), 1);
        QVERIFY(LogCapture::contains(u"  host:                       localhost"_s));
        QVERIFY(!LogCapture::mentions(u"Trying to use credential"_s));
    }

    void redirectsLeadNowhereElse()
    {
        FaultServer elsewhere;
        elsewhere.on(signinPath, Response::ok(R"({"ErrorCode":0,"SessionId":"stolen"})"));
        Stage stage;
        stage.server.on(signinPath, Response::redirect(elsewhere.url(signinPath).toEncoded(), 307));
        stage.request(SessionSignin);
        QTRY_VERIFY(stage.ended == 1 && !stage.session->isUpdating());
        QVERIFY(!stage.succeeded);
        QVERIFY(elsewhere.requests().isEmpty());
    }

    // What was typed as the password, the message as JSON, what is shown.
    void messagesOfTheService_data()
    {
        const Table<QString, QByteArray, QString> row;
        const QByteArray asJson =
            QJsonDocument(QJsonArray{brevok::testing::password}).toJson(QJsonDocument::Compact);

        const QString usual = brevok::testing::password;
        row("escape sequences", usual, "\"no \\u001b[31mway\\u0007\\u009b2J\"", u"no  [31mway  2J"_s);
        row("line like the log's", usual, "\"no\\r\\n2026-01-01 10:00:00.000 Tolvane Brevok[1:1] forged\"",
            u"no\n2026-01-01 10:00:00.000 Tolvane Brevok[1:1] forged"_s);
        row("other direction", usual, R"("abc\u202egnp.exe")", u"abcgnp.exe"_s);
        row("half a character", usual, R"("a\ud83db")", u"a\uFFFDb"_s);
        row("repeats the password", usual, "\"wrong: " + asJson.sliced(2).chopped(1),
            u"wrong: (not logged)"_s);
        row("repeats it in HTML", usual, "\"wrong: pass w&#246;rd&quot;!\"", u"wrong: (not logged)!"_s);
        row("repeats it in an address", usual, R"("wrong: pass+w%c3%b6rd%22!")", u"wrong: (not logged)!"_s);
        row("short password", u"abc"_s, R"("'abc' is no password, abcd is")",
            u"'(not logged)' is no password, abcd is"_s);
        row("a megabyte", usual, '"' + QByteArray(1 << 20, 'x') + '"', QString(999, u'x') + u'…');
    }

    // With and without an alert: what is not shown is told to whoever asked.
    void messagesOfTheService()
    {
        const auto [typed, message, shown] = columns<QString, QByteArray, QString>();
        for (const bool alert : {true, false}) {
            Stage stage;
            stage.server.on(signinPath,
                Response::ok(R"({"ErrorCode":)" + QByteArray(alert ? "50" : "1") + R"(,"ErrorMessage":)"
                    + message + '}'));
            stage.session->signinWithID(u"ada@example.com"_s, typed);
            QTRY_COMPARE(stage.ended, 1);
            QCOMPARE(stage.told, shown);
            QTRY_COMPARE(stage.presenter.shown.size(), alert ? 1 : 0);
            if (alert) {
                QCOMPARE(stage.presenter.shown.constFirst().informativeText, shown);
            }
            const QStringList lines = LogCapture::lines();
            const auto bad = std::find_if(lines.cbegin(), lines.cend(), [](const QString &line) {
                return line.size() > 1500 || line.contains(u'\x1b') || line.contains(u"\n2026"_s);
            });
            QVERIFY2(bad == lines.cend(), qPrintable(*bad));
        }
    }

    // Ids as JSON.
    void idsThatCannotTravel_data()
    {
        const Table<QByteArray> row;
        row("header of its own", R"("id\r\nX-Admin: yes")"_ba);
        row("cookie of its own", R"("id; role=admin")"_ba);
        row("NUL", R"("i\u0000d")"_ba);
        row("seven megabytes", '"' + QByteArray(7 << 20, 'i') + '"');
    }

    void idsThatCannotTravel()
    {
        const auto [id] = columns<QByteArray>();
        auto stage = std::make_unique<Stage>();
        stage->server.on(signinPath, Response::ok(R"({"ErrorCode":0,"SessionId":)" + id + '}'));
        stage->request(SessionSignin);
        QTRY_COMPARE(stage->ended, 1);
        QVERIFY(!stage->succeeded);
        QCOMPARE(stage->told, u"Unexpected server response."_s);
        QVERIFY(stage->session->sessionId().isNull());
        QVERIFY(!stage->stored().contains("SessionId"_L1));

        // One that an earlier version stored.
        const QString stored = QJsonDocument::fromJson('[' + id + ']').array().first().toString();
        stage.reset();
        const Stage later(20000, {{u"SessionId"_s, stored}});
        QVERIFY(later.session->sessionId().isNull());
    }
};

QTEST_GUILESS_MAIN(TestSessionFaults)
#include "test_session_faults.moc"
