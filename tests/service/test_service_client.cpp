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

using Framing = Response::Framing;
using Fault = Response::Fault;

namespace {

/// A proxy that leads every CONNECT to one port of this machine.
class TunnelProxy final : public QTcpServer {
public:
    explicit TunnelProxy(quint16 target)
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this, target] {
            QTcpSocket *in = nextPendingConnection();
            auto *out = new QTcpSocket(in);
            out->connectToHost(QHostAddress::LocalHost, target);
            connect(out, &QTcpSocket::readyRead, in, [in, out] { in->write(out->readAll()); });
            connect(in, &QTcpSocket::readyRead, out, [this, in, out] {
                if (asked.contains(in)) {
                    out->write(in->readAll());
                } else if (in->peek(4096).contains("\r\n\r\n")) {
                    asked.insert(in, in->readAll().split('\r').first());
                    in->write("HTTP/1.1 200 OK\r\n\r\n");
                }
            });
        });
    }
    QHash<QTcpSocket *, QByteArray> asked;
};

} // namespace

class ServiceClientTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void lists_data()
    {
        const Table<Response, int, int> row;
        const QByteArray body = sampleBody();

        row("plain", Response::ok(body), 200, 0);
        row("chunked", {.body = body, .framing = Framing::Chunked}, 200, 0);
        row("until close", {.body = body, .framing = Framing::UntilClose}, 200, 0);
        row("gzip", {.body = body, .gzip = true}, 200, 0);
        row("gzip, chunked", {.body = body, .gzip = true, .framing = Framing::Chunked}, 200, 0);
        row("gzip, very repetitive", {.body = QByteArray(20000000, 'x'), .gzip = true}, 200, 0);
        row("empty", Response::ok({}), 200, 0);
        row("empty, called gzip", {.headers = {{"Content-Encoding", "gzip"}}}, 200, 0);
        row("late", {.body = body, .delayMs = 50}, 200, 0);
        row("500 with a body", Response::of(500, body), 500, 0);
        row("500 with a gzip body", {.status = 500, .body = body, .gzip = true}, 500, 0);
        row("401 with a challenge",
            {.status = 401, .headers = {{"WWW-Authenticate", "Basic realm=x"}}, .body = body}, 401, 0);
        row("304", Response::of(304), 304, 0);
        row("redirect to nowhere", Response::of(302, body), 302, 0);

        row("silent", Response::silent(), 0, timedOutCode);
        row("stalls in the body", {.body = body, .fault = Fault::Stall, .faultAfter = 500}, 200,
            timedOutCode);
        row("reset", Response::reset(), 0, -1005);
        row("hangs up", Response::hangUp(), 0, -1005);
        row("not HTTP", Response::garbage("\x01\x02 what?\r\n\r\n"), 0, -1011);
        row("cut, gzip", {.body = body, .gzip = true, .fault = Fault::Close, .faultAfter = 500}, 200, -1005);
        row("cut, gzip, length lies", {.body = body, .gzip = true, .lengthLie = -9}, 200, -1005);
        row("cut, 500", {.status = 500, .body = body, .fault = Fault::Close, .faultAfter = 500}, 500, -1005);
        row("called gzip, but is not", {.headers = {{"Content-Encoding", "gzip"}}, .body = body}, 200, -1016);

        row("redirect", Response::redirect("/chain?4"), 200, 0);
        row("five redirects", Response::redirect("/chain?0"), 200, 0);
        row("six redirects", Response::redirect("/chain?-1"), 0, -1007);
        row("redirect loop", Response::redirect("/list", 307), 0, -1007);
        row("redirect without TLS", Response::redirect("http://localhost:9/"), 0, -1);
        row("redirect to a file", Response::redirect("file:///etc/passwd"), 0, -1);
    }

    void lists()
    {
        const auto [response, status, code] = columns<Response, int, int>();
        Stage stage(TestCertificates::shared().valid(), code == timedOutCode ? shortTimeout : patient);
        stage.server.on(u"/list"_s, response);
        stage.server.on(u"/chain"_s, [](const Request &request) {
            const int hop = request.target.split('?').last().toInt() + 1;
            return hop > 4 ? Response::ok("end") : Response::redirect("chain?" + QByteArray::number(hop));
        });

        const ServiceReply reply = stage.list(u"/list"_s);
        QCOMPARE(reply.error ? reply.error->code : 0, code);
        // On a busy machine the short time is over before a head comes.
        if (code != timedOutCode) {
            QCOMPARE(reply.status, status);
        }
        if (reply.error) {
            QCOMPARE(reply.error->domain, QString::fromLatin1(transportErrorDomain));
            QVERIFY(!reply.error->description.isEmpty());
        }
        const bool redirected = response.status == 302 && !response.headers.isEmpty();
        if (code != -1016) {
            QCOMPARE(reply.body, code != 0 ? QByteArray() : redirected ? "end"_ba : response.body);
        }
    }

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

        // A body goes along only where the redirect says that the method stays.
        stage.server.on(u"/post"_s, Response::redirect("/see", 303));
        stage.server.on(u"/repeat"_s, Response::redirect("/see", 308));
        for (const QString &path : {u"/post"_s, u"/repeat"_s}) {
            ExchangeRequest request = stage.network.request(stage.server.url(path));
            request.method = "POST";
            request.headers = {{"Content-Type", "application/json"}};
            request.body = "{}";
            stage.send(request);
        }
        const QList<Request> seen = stage.server.requests(u"/see"_s);
        QCOMPARE(seen.size(), 2);
        QCOMPARE(seen[0].method + seen[0].body + seen[0].header("Content-Type"), "GET"_ba);
        QCOMPARE(seen[1].method + seen[1].body + seen[1].header("Content-Type"), "POST{}application/json"_ba);
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

    void proxiesOfTheSystemAreUsed()
    {
        Stage stage(TestCertificates::shared().leaf({u"service.example"_s, u"localhost"_s}));
        stage.server.on(u"/icon"_s, Response::ok("icon"));
        const TunnelProxy proxy(stage.server.port());
        qputenv("https_proxy", "http://127.0.0.1:" + QByteArray::number(proxy.serverPort()));
        QCOMPARE(stage.file(QUrl(u"https://service.example/icon"_s)).body, "icon"_ba);
        QCOMPARE(stage.file(stage.server.url(u"/icon"_s)).body, "icon"_ba);
        qunsetenv("https_proxy");
        QCOMPARE(proxy.asked.values(), QList{"CONNECT service.example:443 HTTP/1.1"_ba});
    }
};

QTEST_GUILESS_MAIN(ServiceClientTest)
#include "test_service_client.moc"
