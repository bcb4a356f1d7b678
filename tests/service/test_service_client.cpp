// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ServiceStage.h"
#include "support/FolderTest.h"
#include "support/Table.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Stage = ServiceStage;

class ServiceClientTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void aListCarriesVersionSessionAndStoredCookies()
    {
        Stage stage;
        stage.server.on(u"/list"_s,
            {.headers = {{"Set-Cookie", "lb=one; Path=/; Secure"}, {"Set-Cookie", "SessionId=planted"}},
                .body = "[]"});
        stage.sessionId = u"abc"_s;
        QCOMPARE(stage.list(u"/list"_s).header("SET-cookie"), "lb=one; Path=/; Secure"_ba);
        stage.list(u"/list"_s);
        stage.sessionId.clear();
        stage.list(u"/list"_s);
        QList<QByteArray> cookies;
        for (const Request &request : stage.server.requests()) {
            cookies.append(request.header("cookie"));
            QCOMPARE(request.method, "GET"_ba);
            QCOMPARE(request.header("X-Tolvane-Brevok-Version"), "2"_ba);
        }
        QCOMPARE(cookies, (QList{"SessionId=abc"_ba, "SessionId=abc; lb=one"_ba, "lb=one"_ba}));
    }

    void whatProvesTheUserStaysWithItsHost()
    {
        Stage stage;
        FaultServer other;
        stage.sessionId = u"abc"_s;
        stage.server.on(u"/list"_s, Response::redirect("/here"));
        stage.server.on(u"/here"_s, Response::redirect(other.url(u"/there"_s).toEncoded()));
        other.on(u"/there"_s, Response::ok("[]"));

        QCOMPARE(stage.list(u"/list"_s).body, "[]"_ba);
        QCOMPARE(stage.server.requests(u"/here"_s).value(0).header("Cookie"), "SessionId=abc"_ba);
        QCOMPARE(other.requests().size(), 1);
        QCOMPARE(other.requests().constFirst().header("Cookie"), QByteArray());
    }

    void listsAndFilesAreLimited()
    {
        Stage stage;
        stage.limits = {.listBytes = 1000, .fileBytes = 500, .fileMs = shortTimeout};
        stage.server.on(u"/endless"_s, {.body = QByteArray(1000000, 'x'), .repeat = 1000000});
        stage.server.on(u"/bomb"_s, {.body = QByteArray(1000000, 'x'), .gzip = true});
        stage.server.on(u"/500"_s, Response::ok(QByteArray(500, 'x')));
        stage.server.on(u"/501"_s, Response::ok(QByteArray(501, 'x')));
        stage.server.on(u"/slow"_s, Response::silent());
        for (const QString &tooLong : {u"/endless"_s, u"/bomb"_s}) {
            QCOMPARE(stage.list(tooLong).error.value_or(BrevokError()).domain,
                QString::fromLatin1(connectionErrorDomain));
        }
        QCOMPARE(stage.file(stage.server.url(u"/slow"_s)).error.value_or(BrevokError()).code, -2);
        stage.limits.fileMs = patient;
        const QByteArray small = stage.file(stage.server.url(u"/500"_s)).body;
        QCOMPARE(small.size(), 500);
        QVERIFY(small.capacity() < 2 * small.size()); // thousands of them are kept
        QVERIFY(stage.file(stage.server.url(u"/501"_s)).error);
        QCOMPARE(stage.server.requests(u"/500"_s).value(0).header("Cache-Control"), "no-cache"_ba);
    }

    void onlyTrustedServersAreAsked_data()
    {
        const Table<TestIdentity, int> row;
        const TestCertificates &known = TestCertificates::shared();
        row("valid", known.valid(), 0);
        row("expired", known.expired(), -1202);
        row("other host", known.leaf({u"elsewhere.example"_s}), -1202);
        row("alternative names decide", known.leaf({u"elsewhere.example"_s}, 24, "localhost"), -1202);
        row("unknown authority", TestCertificates().valid(), -1202);
        row("no TLS", TestIdentity(), -1200);
    }

    void onlyTrustedServersAreAsked()
    {
        const auto [identity, code] = columns<TestIdentity, int>();
        Stage stage(identity);
        QTcpServer plain;
        connect(&plain, &QTcpServer::newConnection, &plain,
            [&plain] { plain.nextPendingConnection()->write("220 mail.example ESMTP\r\n"); });
        QVERIFY(plain.listen(QHostAddress::LocalHost));

        const QUrl url(u"https://localhost:%1/list"_s.arg(plain.serverPort()));
        const ServiceReply reply = currentRow() == u"no TLS"_s ? stage.file(url) : stage.list(u"/list"_s);
        QCOMPARE(reply.error.value_or(BrevokError()).code, code);
        QCOMPARE(stage.server.requests().size(), code == 0 ? 1 : 0);
    }

    void aClosedPortIsToldWithoutTheQuery()
    {
        Stage stage;
        stage.server.stop();
        const BrevokError error =
            stage.file(stage.server.url(u"/x"_s + u"?token=secret"_s)).error.value_or(BrevokError());
        QCOMPARE(error.code, -1004);
        QVERIFY(!error.userInfoText().contains(u"secret"_s));
    }
};

QTEST_GUILESS_MAIN(ServiceClientTest)
#include "test_service_client.moc"
