// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Log.h"
#include "service/ReplyDecoding.h"
#include "SessionStage.h"
#include "support/FolderTest.h"
#include "support/Table.h"

#include <QSignalSpy>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Stage = SessionStage;

namespace {

// What every request has is left out.
RawHeaders ownHeaders(const Request &request)
{
    RawHeaders headers = request.headers;
    headers.removeIf([](const auto &header) {
        return QByteArrayList{"Host", "User-Agent", "Content-Length"}.contains(header.first);
    });
    return headers;
}

} // namespace

class TestSession final : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void signsInAndOut()
    {
        Stage stage(20000, Stage::signedIn());
        stage.server.on(signinPath,
            Response{.headers = {{"Set-Cookie", "SessionId=forged"}, {"Set-Cookie", "tracker=1"}},
                .body = R"({"ErrorCode":0,"SessionId":"id-1"})",
                .gzip = true});
        stage.session->signinWithID(u"bob@example.com"_s, password);
        QCOMPARE(stage.session->orlecId(), u"bob@example.com"_s);
        QVERIFY(stage.session->isUpdating());
        QCOMPARE(stage.changed, 1);
        QTRY_COMPARE(stage.ended, 1);
        QVERIFY2(stage.succeeded, qPrintable(stage.told));
        QCOMPARE(stage.session->sessionId(), u"id-1"_s);
        QVERIFY(!stage.session->isUpdating());
        QCOMPARE(stage.willChange, stage.changed);
        QCOMPARE(stage.changed, 2);
        QVERIFY(stage.presenter.shown.isEmpty());
        QVERIFY(!stage.session->description().contains(u"id-1"_s));

        const Request request = stage.server.requests().at(0);
        QCOMPARE(request.method, "POST");
        QCOMPARE(request.body,
            QJsonDocument(QJsonObject{{u"email"_s, u"bob@example.com"_s}, {u"password"_s, password}})
                .toJson(QJsonDocument::Compact));
        const RawHeaders always{{"Content-Type", "application/json"}, {"Accept", "application/json"},
            {"Accept-Encoding", "gzip"}, {"X-Tolvane-Brevok-Version", "2"}};
        QCOMPARE(ownHeaders(request), always);

        QCOMPARE(stage.state.value(u"OrlecSessionVersion"_s).toDouble(), 1.2);
        const BrevokSession next(stage.state, stage.network, stage.connectivity, stage.queue, stage.updater);
        QCOMPARE(next.sessionId(), u"id-1"_s);
        QCOMPARE(BrevokSession::session(), stage.session.get());

        // The cookies that the service set meanwhile go along, and do not push ours out.
        stage.server.on(signoutPath, Response::ok(R"({"ErrorCode":0})"));
        stage.session->signout();
        QTRY_COMPARE(stage.ended, 2);
        QVERIFY(stage.succeeded);
        QVERIFY(stage.session->sessionId().isNull());
        QCOMPARE(stage.stored(), Record({{u"orlecId"_s, u"bob@example.com"_s}, {u"later"_s, 7}}));
        QVERIFY(stage.server.requests().at(1).body.isEmpty());
        QCOMPARE(ownHeaders(stage.server.requests().at(1)),
            always + RawHeaders({{"Cookie", "SessionId=id-1; tracker=1"}}));

        stage.session->signout();
        QTRY_COMPARE(stage.ended, 3);
        QVERIFY(stage.server.requests().at(2).header("Cookie").isNull()); // signed out: nothing to send
    }

    // Of success, nothing (null) is told.
    void replies_data()
    {
        const Table<int, Response, QString, QString, bool, QString> row;
        const QString unexpected = u"Unexpected server response."_s;
        const QString wrong = u"Wrong user name or password."_s;
        const QString update = u"There is critical update of Tolvane Brevok application."_s;

        row("no session id", SessionSignin, Response::ok(R"({"ErrorCode":0})"), unexpected, {}, false, {});
        row("wrong password", SessionSignin, Response::of(401, R"({"ErrorCode":2,"ErrorMessage":"no such"})"),
            wrong, u"Authentication Error|"_s + wrong, false,
            u"Server Error! connection to: \"%1\" failed: 2 with message: no such"_s);
        row("401 without JSON", SessionSignin, Response::of(401, "no"), wrong, {}, false,
            u"Session connection to: \"%1\" failed with response: 401 - unauthorized"_s);
        row("quiet", SessionSignout, Response::ok(R"({"ErrorCode":2})"), wrong, {}, false,
            u"Session action: signout failed With Error Message: "_s + wrong);
        row("code 1", SessionSignout, Response::ok(R"({"ErrorCode":1,"ErrorMessage":7})"), u"-"_s, {}, false,
            u"Server Error! connection to: \"%1\" failed: 1 with message: -"_s);
        row("code 9", SessionSignin, Response::ok(R"({"ErrorCode":9,"SessionId":"new"})"), {}, {}, true, {});
        row("garbage elsewhere", otherAction, Response::of(500, "oops" + QByteArray(300, 'x')),
            u"Server responded with HTTP code: 500."_s, {}, true,
            u"Response string: oops"_s + QString(252, u'x'));
        row("broken gzip", SessionSignout,
            Response{.headers = {{"Content-Encoding", "gzip"}}, .body = "not gzip"}, unexpected, {}, false,
            u"Session action signout failed with error. Received 8 bytes of unexpected data"_s);
        row("redirect", otherAction, Response::redirect("/elsewhere"), {}, {}, true, {});
        row("critical update", SessionSignin,
            Response{.headers = {{"x-tolvane-brevok-response-code", " 1x"}}, .body = R"({"ErrorCode":2})"},
            update, update + u'|', true, {});
        row("critical update for a copy that cannot get it", SessionSignin,
            Response{.headers = {{"X-Tolvane-Brevok-Response-Code", "1"}}, .body = "x"}, update,
            update + u"|This copy cannot update itself. You can get the new version at %1."_s, true, {});
        row("other response code", SessionSignout,
            Response{.headers = {{"X-Tolvane-Brevok-Response-Code", "10"}}, .body = R"({"ErrorCode":0})"}, {},
            {}, false, {});
    }

    void replies()
    {
        const auto [action, response, told, shown, held, line] =
            columns<int, Response, QString, QString, bool, QString>();
        Stage stage(20000, Stage::signedIn());
        const QString path = action == SessionSignin ? signinPath
            : action == SessionSignout               ? signoutPath
                                                     : u"/other"_s;
        stage.server.on(path, response);
        stage.server.on(u"/elsewhere"_s, Response::ok(R"({"ErrorCode":0})"));
        stage.updater.can = !currentRow().endsWith(u"cannot get it"_s);
        const auto completed = [&stage](const QString &text, const QString &atService) {
            return text.contains(u"%1"_s) ? text.arg(stage.server.url(atService).toString()) : text;
        };
        stage.request(action);
        QTRY_COMPARE(stage.ended, 1);
        QCOMPARE(stage.lastAction, action);
        QCOMPARE(stage.succeeded, told.isNull());
        QCOMPARE(stage.told, told);
        QCOMPARE(stage.shownText(0), completed(shown, {}));
        QVERIFY(stage.presenter.shown.size() <= 1);
        QCOMPARE(!stage.session->sessionId().isNull(), held);
        QVERIFY(!stage.session->isUpdating());
        QCOMPARE(stage.changed, 2);
        QCOMPARE(stage.updater.checks, told.contains(u"critical"_s) ? 1 : 0);
        QVERIFY2(line.isEmpty() || LogCapture::contains(completed(line, path)),
            qPrintable(LogCapture::lines().join(u'\n')));
    }

    void forcedSignout()
    {
        for (const auto &[code, signouts] : {std::pair(3, 0), std::pair(98, 1)}) {
            Stage stage(20000, Stage::signedIn());
            stage.server.on(u"/other"_s, Response::ok(R"({"ErrorCode":)" + QByteArray::number(code) + '}'));
            stage.server.on(
                signoutPath, Response::ok(R"({"ErrorCode":98})")); // quiet: it is the answer to one
            stage.request(otherAction);
            QTRY_COMPARE(stage.ended, 1 + signouts);
            QVERIFY(stage.session->sessionId().isNull());
            QVERIFY(!stage.stored().contains("SessionId"_L1));
            QCOMPARE(stage.server.requests(signoutPath).size(), signouts);
            QCOMPARE(stage.server.requests(signoutPath).value(0).header("Cookie"),
                signouts > 0 ? "SessionId=held-id"_ba : ""_ba);
            QCOMPARE(stage.presenter.shown.size(), 1);
            QVERIFY(
                stage.shownText(0).endsWith(u"You have been logged out!\nPlease try to sign-in again."_s));
        }
    }

    void recordIsWrittenBetweenRequestsOnly()
    {
        Stage stage;
        stage.server.on(signinPath, Response::ok(R"({"ErrorCode":0,"SessionId":"id"})"));
        stage.server.on(u"/other"_s, Response::silent());
        stage.request(otherAction);
        stage.request(SessionSignin);
        QTRY_COMPARE(stage.ended, 1);
        QCOMPARE(stage.session->sessionId(), u"id"_s);
        QVERIFY(stage.session->isUpdating());
        QVERIFY(stage.stored().isEmpty());
        stage.server.stop();
        QTRY_VERIFY(!stage.session->isUpdating());
        QCOMPARE(stage.stored().value("SessionId"_L1), u"id"_s);
    }

    void logHoldsNoSecrets()
    {
        setLogLevel(1);
        Stage stage(20000, Stage::signedIn());
        stage.server.on(signinPath, [](const Request &request) { // echoes, and makes a session without a code
            return Response::ok(request.body + "pass wörd\" {\"SessionId\": \"fresh-id\"}");
        });
        stage.server.on(u"/other"_s, [](const Request &request) {
            return Response{.headers = {{"Set-Cookie", request.header("Cookie")}},
                .body = "{\"ErrorCode\":50,\"ErrorMessage\":\"bad " + request.header("Cookie") + "\"}"};
        });
        stage.request(otherAction);
        QTRY_COMPARE(stage.ended, 1);
        stage.request(SessionSignin);
        QTRY_COMPARE(stage.ended, 2);
        QVERIFY(LogCapture::mentions(u"Response string: "_s) && LogCapture::mentions(u"Session request: "_s));
        for (const QString &secret : {u"pass w"_s, u"held-id"_s, u"fresh-id"_s}) {
            QVERIFY2(!LogCapture::mentions(secret), qPrintable(LogCapture::lines().join(u'\n')));
        }
    }
};

QTEST_GUILESS_MAIN(TestSession)
#include "test_session.moc"
