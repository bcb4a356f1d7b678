// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// What replies leave for the next request: conditions and cookies.

#include "foundation/Log.h"
#include "service/ServiceCookies.h"
#include "ServiceStage.h"
#include "support/FolderTest.h"
#include "support/Table.h"

#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Stage = ServiceStage;

class NextRequestTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void whatIsSentBack_data()
    {
        const Table<RawHeaders, QByteArray, QByteArray> row;
        const QByteArray noon = "Sun, 22 Nov 2026 12:00:00 GMT";
        const QByteArray later = "Sun, 22 Nov 2026 12:01:00 GMT";

        row("nothing", {}, {}, {});
        row("strong tag", {{"ETag", "\"a!#~\""}}, "\"a!#~\"", {});
        row("weak tag", {{"etag", R"(W/"1")"}}, R"(W/"1")", {});
        row("tag and date", {{"Last-Modified", noon}, {"Date", later}, {"ETag", R"("1")"}}, R"("1")", {});
        row("tag without quotes", {{"ETag", "1"}}, {}, {});
        row("two tags in one", {{"ETag", R"("1", "2")"}}, {}, {});
        row("tag with a control character", {{"ETag", "\"1\x01\x1b[31m\""}}, {}, {});
        row("very long tag", {{"ETag", '"' + QByteArray(100000, 'x') + '"'}}, {}, {});
        row("date", {{"Last-Modified", noon}, {"Date", later}}, {}, noon);
        row("date with rubbish before it",
            {{"Last-Modified", "\x01 rubbish, 22 Nov 2026 12:00:00 GMT"}, {"Date", later}}, {}, noon);
        row("date of this minute", {{"Last-Modified", "Sun, 22 Nov 2026 12:00:01 GMT"}, {"Date", later}}, {},
            {});
        row("date without the clock's time", {{"Last-Modified", noon}}, {}, {});
        row("no date", {{"Last-Modified", "soon"}, {"Date", later}}, {}, {});
    }

    // The next request has the headers of every list, and what is usable of what the service said.
    void whatIsSentBack()
    {
        const auto [headers, tag, date] = columns<RawHeaders, QByteArray, QByteArray>();
        Stage stage;
        stage.server.on(u"/list"_s, {.headers = headers, .body = "[]"});
        const ServiceReply first = stage.list(u"/list"_s);
        QCOMPARE(first.body, "[]"_ba);
        QVERIFY(!first.notModified);
        stage.server.on(u"/list"_s, {.status = 304, .headers = headers});
        const ServiceReply second = stage.list(u"/list"_s, first.validator);
        const Request request = stage.server.requests().constLast();
        QCOMPARE(request.header("If-None-Match"), tag);
        QCOMPARE(request.header("If-Modified-Since"), date);
        QCOMPARE(request.header("X-Tolvane-Brevok-Version"), "2"_ba);
        QCOMPARE(second.notModified, !tag.isEmpty() || !date.isEmpty());
        QCOMPARE(second.status, 304);
    }

    void onlyWhoGotItAsksSo()
    {
        Stage stage;
        Stage otherService;
        for (Stage *each : {&stage, &otherService}) {
            each->sessionId = u"lovelace"_s;
            each->server.on(u"/list"_s, {.headers = {{"ETag", R"("1")"}}, .body = "[]"});
            each->server.on(u"/other"_s, Response::ok("[]"));
        }
        const Validator known = stage.list(u"/list"_s).validator;
        QVERIFY(!known.isEmpty());
        QVERIFY(!known.scope.contains("lovelace"));
        const auto asksSo = [&known](Stage &asking, const QString &sessionId, const QString &path) {
            asking.sessionId = sessionId;
            asking.list(path, known);
            return !asking.server.requests().constLast().header("If-None-Match").isEmpty();
        };
        QVERIFY(asksSo(stage, u"lovelace"_s, u"/list"_s));
        QVERIFY(!asksSo(stage, {}, u"/list"_s)); // signed out
        QVERIFY(!asksSo(stage, u"bob"_s, u"/list"_s));
        QVERIFY(!asksSo(stage, u"lovelace"_s, u"/other"_s));
        QVERIFY(!asksSo(otherService, u"lovelace"_s, u"/list"_s));
    }

    // Two addresses may use one tag for different things.
    void aConditionStaysWithItsAddress()
    {
        Stage stage;
        const Response tagged{.headers = {{"ETag", R"("1")"}}, .body = "[]"};
        stage.server.on(u"/list"_s, tagged);
        stage.server.on(u"/there"_s, tagged);
        const Validator known = stage.list(u"/list"_s).validator;
        stage.server.on(u"/list"_s, Response::redirect("/there"));
        const ServiceReply led = stage.list(u"/list"_s, known);
        QCOMPARE(led.body, "[]"_ba);
        QVERIFY(led.validator.isEmpty());
        QCOMPARE(stage.server.requests(u"/list"_s).constLast().header("If-None-Match"), R"("1")"_ba);
        QVERIFY(stage.server.requests(u"/there"_s).constLast().header("If-None-Match").isEmpty());
        stage.server.on(u"/there"_s, Response::of(304));
        QVERIFY(!stage.list(u"/list"_s, known).notModified);

        const QUrl icon = stage.server.url(u"/there"_s);
        stage.server.on(u"/there"_s, tagged);
        const Validator ofIcon = stage.file(icon).validator;
        stage.server.on(u"/there"_s, Response::of(304));
        QVERIFY(stage.file(icon, ofIcon).notModified);
        const Request request = stage.server.requests(u"/there"_s).constLast();
        QCOMPARE(request.header("Cache-Control") + request.header("If-None-Match"), R"(no-cache"1")"_ba);
    }

    void nobodyAskedForIt()
    {
        Stage stage;
        stage.server.on(u"/list"_s, {.status = 304, .headers = {{"ETag", R"("1")"}}});
        const ServiceReply reply = stage.list(u"/list"_s);
        QCOMPARE(reply.status, 304);
        QVERIFY(!reply.notModified && reply.validator.isEmpty());
        // Of a reply that is cut short, or is an error's, nothing is remembered either.
        stage.server.on(u"/list"_s, {.status = 500, .headers = {{"ETag", R"("1")"}}, .body = "[]"});
        QVERIFY(stage.list(u"/list"_s).validator.isEmpty());
        Response cutShort{.headers = {{"ETag", R"("1")"}}, .body = "[ ]", .faultAfter = 1};
        cutShort.fault = Response::Fault::Close;
        stage.server.on(u"/list"_s, cutShort);
        const ServiceReply cut = stage.list(u"/list"_s);
        QVERIFY(cut.error && cut.validator.isEmpty());
    }

    void cookies_data()
    {
        const Table<QList<QByteArray>, QByteArray> row;
        row("several", {"a=1", "b=\"2\"; Secure; HttpOnly"}, "a=1; b=\"2\"");
        row("again", {"a=1; Path=/", "a=2; Path=/"}, "a=2");
        row("another path", {"a=1; Path=/elsewhere", "b=2; Path=/api/pl", "c=3; Path=/api"}, "c=3");
        row("none of ours", {"SessionId=planted"}, "");
        row("no cookies", {"", "=1", ";"}, "");
        row("ends at once",
            {"a=1", "a=; Max-Age=0", "b=1; Max-Age=60; Expires=Sun, 06 Nov 1994 08:49:37 GMT"}, "b=1");
        row("ended",
            {"a=1; Expires=Sun, 06 Nov 1994 08:49:37 GMT", "b=1; Expires=Sun, 06-Nov-1994 08:49:37 GMT",
                "c=1; Expires=whenever", "d=1; Expires=Sun, 06 Nov 2094 08:49:37 GMT"},
            "c=1; d=1");
        row("too large", {"a=" + QByteArray(5000, 'x'), "b=1"}, "b=1");
        row("a control character", {"a=1\r2", "b=\x1b", "c=1"}, "c=1");
    }

    void cookies()
    {
        const auto [set, sent] = columns<QList<QByteArray>, QByteArray>();
        const QUrl url(u"https://service.example/api/plugins"_s);
        ServiceCookies cookies;
        for (const QByteArray &line : set) {
            cookies.take({{"set-cookie", line}}, url);
        }
        QCOMPARE(cookies.headerFor(url), sent);
    }

    // However often the service sets others.
    void cookiesStayHidden()
    {
        const QUrl url(u"https://service.example/"_s);
        ServiceCookies cookies;
        cookies.take({{"Set-Cookie", "lb=node-of-the-first"}, {"Set-Cookie", "lang=xx"}}, url);
        for (int i = 0; i < 100; ++i) {
            cookies.take({{"Set-Cookie", "turn=" + QByteArray::number(1000000 + i)}}, url);
        }
        QCOMPARE(messageForLog(QString::fromLatin1(cookies.headerFor(url))),
            u"lb=(not logged); lang=(not logged); turn=(not logged)"_s);
    }
};

QTEST_GUILESS_MAIN(NextRequestTest)
#include "test_next_request.moc"
