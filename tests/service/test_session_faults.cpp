// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Log.h"
#include "SessionStage.h"
#include "support/FolderTest.h"
#include "support/InRow.h"
#include "support/Table.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Stage = SessionStage;

class TestSessionFaults final : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void unreachable()
    {
        for (const bool verbose : {true, false}) {
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
    }

    void silentServerIsAskedThrice()
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
        QCOMPARE(stage.server.requests().at(2).headers, stage.server.requests().at(0).headers);
        QVERIFY(stage.presenter.shown.isEmpty());
        QCOMPARE(stage.changed, 4);

        stage.server.on(signoutPath, Response::silent());
        bool updatingWhileTold = false;
        stage.presenter.whileShown = [&](const AlertContent &) {
            updatingWhileTold = stage.session->isUpdating();
        };
        stage.session->signout();
        QTRY_VERIFY_WITH_TIMEOUT(stage.ended == 2 && !stage.session->isUpdating(), 60000);
        QVERIFY(!stage.succeeded && updatingWhileTold);
        QCOMPARE(stage.server.requests(signoutPath).size(), 3);
        QCOMPARE(stage.presenter.shown.size(), 1);
        QCOMPARE(LogCapture::count(u"Session connection to: \"%1\" failed!"_s.arg(
                     stage.server.url(signoutPath).toString())),
            3);
        QCOMPARE(stage.session->sessionId(), u"late"_s); // no reply handler ran
    }

    // It is told, and not tried again.
    void whatCannotBeSentOrAnswered()
    {
        FaultServer elsewhere;
        elsewhere.on(signinPath, Response::ok(R"({"ErrorCode":0,"SessionId":"stolen"})"));
        const TestCertificates &certificates = TestCertificates::shared();
        const QList<std::tuple<const char *, TestIdentity, Response, int>> rows{
            {"expired certificate", certificates.expired(), Response::ok(R"({"ErrorCode":0})"), 0},
            {"led elsewhere", certificates.valid(),
                Response::redirect(elsewhere.url(signinPath).toEncoded(), 307), 1},
            {"endless", certificates.valid(),
                Response{.body = QByteArray(1024, ' '), .repeat = qint64{1024} * 1024}, 1},
        };
        for (const auto &[name, identity, response, requests] : rows) {
            const InRow in(name);
            Stage stage(20000, Stage::signedIn(), identity);
            setLogLevel(1);
            stage.server.on(signinPath, response);
            stage.request(SessionSignin);
            QTRY_VERIFY(stage.ended == 1 && !stage.session->isUpdating());
            QVERIFY(!stage.succeeded && !stage.told.isEmpty());
            QCOMPARE(stage.server.requests().size(), requests);
            QVERIFY(elsewhere.requests().isEmpty());
            QCOMPARE(stage.presenter.shown.size(), 1);
            QCOMPARE(stage.presenter.shown.at(0).messageText, stage.told);
            QCOMPARE(stage.session->sessionId(), u"held-id"_s);
            QCOMPARE(LogCapture::count(u"Called connection:didReceiveAuthenticationChallenge:"_s), 1);
            QVERIFY(LogCapture::contains(u"  host:                       localhost"_s));
            QVERIFY(!LogCapture::mentions(u"Trying to use credential"_s));
        }
    }

    // The message as JSON, and what is shown.
    void messagesOfTheService_data()
    {
        const Table<QByteArray, QString> row;
        row("nothing else", "\"Password: at least nine letters\"", u"Password: at least nine letters"_s);
        row("line like the log's", "\"no\\r\\n2026-01-01 10:00:00.000 \\u001b[31mforged\"",
            u"no\n2026-01-01 10:00:00.000  [31mforged"_s);
        row("half a character", R"("a\ud83db")", u"a\uFFFDb"_s);
        row("repeats the password", "\"wrong: pass w&#246;rd&quot;!\"", u"wrong: (not logged)!"_s);
        row("a megabyte", '"' + QByteArray(1 << 20, 'x') + '"', QString(999, u'x') + u'…');
    }

    // With and without an alert: what is not shown is told to whoever asked.
    void messagesOfTheService()
    {
        const auto [message, shown] = columns<QByteArray, QString>();
        for (const bool alert : {true, false}) {
            Stage stage;
            stage.server.on(signinPath,
                Response::ok(R"({"ErrorCode":)" + QByteArray(alert ? "50" : "1") + R"(,"ErrorMessage":)"
                    + message + '}'));
            stage.request(SessionSignin);
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

    void idsThatCannotTravel()
    {
        const QList<std::pair<const char *, QJsonValue>> rows{
            {"header of its own", u"id\r\nX-Admin: yes"_s},
            {"seven megabytes", QString(7 << 20, u'i')},
            {"no text", 7},
            {"nothing", u""_s},
        };
        for (const auto &[name, id] : rows) {
            const InRow in(name);
            auto stage = std::make_unique<Stage>();
            const QJsonDocument reply(QJsonObject{{u"ErrorCode"_s, 0}, {u"SessionId"_s, id}});
            stage->server.on(signinPath, Response::ok(reply.toJson()));
            stage->request(SessionSignin);
            QTRY_COMPARE(stage->ended, 1);
            QVERIFY(!stage->succeeded);
            QCOMPARE(stage->told, u"Unexpected server response."_s);
            QVERIFY(stage->session->sessionId().isNull());
            QVERIFY(!stage->stored().contains("SessionId"_L1));

            // One that an earlier version stored.
            stage.reset();
            const Stage later(20000, {{u"SessionId"_s, id}});
            QVERIFY(later.session->sessionId().isNull());
        }
    }
};

QTEST_GUILESS_MAIN(TestSessionFaults)
#include "test_session_faults.moc"
