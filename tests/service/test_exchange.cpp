// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ServiceStage.h"
#include "support/FolderTest.h"
#include "support/Table.h"

#include <QFile>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

using Fault = Response::Fault;

namespace {

constexpr int tooLong = -1103;
constexpr int tooSlow = -2; // not what makes a session send again
constexpr int lost = -1005;
constexpr int badReply = -1011;
constexpr int ledAway = -1010;
constexpr int refused = 1; // with whatever error
constexpr int refusedOrRead = 2; // either that, or the body is the one that was meant

/// The most memory that this process ever had.
qint64 peakBytes()
{
    QFile file(u"/proc/self/status"_s);
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return text.sliced(text.indexOf("VmHWM:") + 6).trimmed().split(' ').value(0).toLongLong() * 1024;
}

/// A proxy that gives every connection the same answer, or none.
class BadProxy final : public QTcpServer {
public:
    explicit BadProxy(const QByteArray &answer)
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this, answer] {
            QTcpSocket *socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, this, [this, socket, answer] {
                asked += socket->readAll();
                socket->write(answer);
            });
        });
    }
    QByteArray asked;
};

} // namespace

class ExchangeTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void oddReplies_data()
    {
        const Table<QByteArray, int, QByteArray> row;
        const QByteArray ok = "HTTP/1.1 200 OK\r\n";
        const QByteArray two = "Content-Length: 2\r\n\r\n{}";
        const QByteArray chunked = ok + "Transfer-Encoding: chunked\r\n\r\n";

        row("plain", ok + two, 0, "{}");
        row("odd case", "HTTP/1.1 200\r\ncOnTeNt-LeNgTh:2\r\n\r\n{}", 0, "{}");
        row("folded", ok + "X-Long: a\r\n b\r\n\tc\r\n" + two, 0, "{}");
        row("500 fields", ok + QByteArray("X-Field: some value\r\n").repeated(500) + two, 0, "{}");
        row("80 large cookies", ok + ("Set-Cookie: a=" + QByteArray(3000, 'x') + "\r\n").repeated(80) + two,
            0, "{}");
        row("90 large cookies", ok + ("Set-Cookie: a=" + QByteArray(3000, 'x') + "\r\n").repeated(90) + two,
            tooLong, {});
        row("a field of 200 KB", ok + "X-Long: " + QByteArray(200000, 'x') + "\r\n" + two, tooLong, {});
        row("a line without end", ok + "X-Long: " + QByteArray(8000000, 'x'), tooLong, {});
        row("a status line without end", "HTTP/1.1 200 " + QByteArray(8000000, 'x'), tooLong, {});
        row("fields without end", ok + QByteArray("a: b\r\n").repeated(1000000), tooLong, {});
        row("continue", QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(500) + ok + two, 0, "{}");
        row("hints", "HTTP/1.1 103 Early Hints\r\nX-Hint: 1\r\n\r\n" + ok + two, 0, "{}");
        row("continue without end", QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(100000), tooLong,
            {});
        row("switching protocols", "HTTP/1.1 101 Switching\r\nUpgrade: websocket\r\n\r\n", refused, {});
        row("nothing", "\r\n", refused, {});
        row("version 3", "HTTP/3.0 200 OK\r\n" + two, badReply, {});
        row("another protocol", "ICY 200 OK\r\n\r\nmusic", badReply, {});
        row("status of five digits", "HTTP/1.1 20000 OK\r\n" + two, badReply, {});
        row("no status", "HTTP/1.1 OK\r\n" + two, badReply, {});
        row("length too long", ok + "Content-Length: 3\r\n\r\n{}", lost, {});
        row("length below zero", ok + "Content-Length: -2\r\n\r\n{}", refusedOrRead, "{}");
        row("length that is none", ok + "Content-Length: two\r\n\r\n{}", refusedOrRead, "{}");
        row("length beyond all", ok + "Content-Length: 99999999999999999999\r\n\r\n{}", refusedOrRead, "{}");
        row("two lengths", ok + "Content-Length: 2\r\nContent-Length: 5\r\n\r\n{}", refusedOrRead, "{}");
        row("length and chunks",
            ok + "Content-Length: 9\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n", 0, "{}");
        row("chunks", chunked + "1;x=y\r\n{\r\n1\r\n}\r\n0\r\nX-Trailer: t\r\n\r\n", 0, "{}");
        row("huge chunk", chunked + "7fffffffffffffff\r\n{}", lost, {});
        row("chunk beyond all", chunked + "ffffffffffffffffffff\r\n{}", refused, {});
        row("chunk below zero", chunked + "-2\r\n{}\r\n0\r\n\r\n", refused, {});
        row("chunk of garbage", chunked + "zz\r\n{}\r\n", refused, {});
        row("NUL in a field", ok + QByteArray("X-Nul: a\0b\r\n", 12) + two, refusedOrRead, "{}");
        const auto moved = [](const QByteArray &location) {
            return "HTTP/1.1 307 Moved\r\nLocation: " + location + "\r\nContent-Length: 0\r\n\r\n";
        };
        row("moved to no address", moved("http://[::1"), ledAway, {});
        row("moved to no host", moved("https:///x"), ledAway, {});
        row("moved to a file", moved("file:///etc/passwd"), ledAway, {});
        row("moved to a program", moved("javascript:alert(1)"), ledAway, {});
        row("moved to no port", moved("https://localhost:99999999/"), ledAway, {});
        row("moved nowhere", moved(""), 0, {});
    }

    void oddReplies()
    {
        const auto [raw, code, body] = columns<QByteArray, int, QByteArray>();
        Stage stage;
        stage.server.on(u"/odd"_s, Response::garbage(raw));
        const ServiceReply reply = post(stage, stage.server.url(u"/odd"_s));
        if (code <= 0) {
            QCOMPARE(reply.error.value_or(BrevokError()).code, code);
        }
        QVERIFY(reply.error || code != refused);
        QCOMPARE(reply.body, reply.error ? QByteArray() : body);
        QVERIFY(!reply.error || !reply.error->description.isEmpty());
        QCOMPARE(stage.server.requests().size(), 1);
        QCOMPARE(stage.list(u"/list"_s).body, "[]"_ba);
    }

    void repliesCutAtEveryByte_data()
    {
        const Table<QByteArray, Response::Fault> row;
        const QByteArray body = R"({"ErrorCode":0,"SessionId":"id"})";
        const QByteArray length = "HTTP/1.1 200 OK\r\nContent-Length: 32\r\n\r\n" + body;
        const QByteArray chunks =
            "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n20\r\n" + body + "\r\n0\r\n\r\n";
        row("length, closed", length, Fault::Close);
        row("length, reset", length, Fault::Reset);
        row("chunks, closed", chunks, Fault::Close);
        row("chunks, reset", chunks, Fault::Reset);
    }

    void repliesCutAtEveryByte()
    {
        const auto [whole, fault] = columns<QByteArray, Response::Fault>();
        Stage stage;
        qsizetype at = 1;
        stage.server.on(u"/cut"_s, [&at, fault = fault, whole = whole](const Request &) {
            return Response{.fault = fault, .raw = whole.first(at)};
        });
        // The line break behind the last chunk is no more than politeness.
        const qsizetype needed = whole.endsWith("\r\n0\r\n\r\n") ? whole.size() - 2 : whole.size();
        for (; at < needed; ++at) {
            const ServiceReply reply = post(stage, stage.server.url(u"/cut"_s));
            QVERIFY2(reply.error && !reply.error->description.isEmpty(), QByteArray::number(at));
            QVERIFY(reply.body.isEmpty());
            QCOMPARE(stage.server.requests().size(), at);
        }
    }

    void gzipCutAnywhereIsNoticed()
    {
        Stage stage;
        const QByteArray member =
            QByteArray::fromHex("1f8b0800000000000203cb48cdc9c9070086a6103605000000"); // hello
        const QByteArray whole = member.repeated(40);
        qsizetype at = 0;
        stage.server.on(u"/list"_s, [&](const Request &) {
            return Response{.headers = {{"Content-Encoding", "gzip"}}, .body = whole.first(at)};
        });
        for (at = 1; at < whole.size(); ++at) {
            const ServiceReply reply = stage.list(u"/list"_s);
            QVERIFY2(reply.error || at % member.size() == 0, QByteArray::number(at));
        }
        at = whole.size();
        QCOMPARE(stage.list(u"/list"_s).body, QByteArray("hello").repeated(40));
        for (const qsizetype size :
            {65535, 65536, 65537, 131072}) { // as large as what unpacks it, and beside
            stage.server.on(u"/list"_s, {.body = QByteArray(size, ' '), .gzip = true});
            QCOMPARE(stage.list(u"/list"_s).received, size);
        }
    }

    void whatExpandsIsStopped()
    {
        Stage stage;
        // A million bytes of zero as one member, a thousand times over.
        const QByteArray member = QByteArray::fromHex("1f8b0800000000000203") + [] {
            const QByteArray zlib = qCompress(QByteArray(1000000, '\0'), 9).sliced(4);
            return zlib.sliced(2).chopped(4);
        }() + QByteArray::fromHex("9ecb791240420f00");
        stage.server.on(
            u"/bomb"_s, {.headers = {{"Content-Encoding", "gzip"}}, .body = member, .repeat = 1000});
        [[maybe_unused]] const qint64 before = peakBytes();
        for (const ServiceReply &reply :
            {post(stage, stage.server.url(u"/bomb"_s)), stage.list(u"/bomb"_s)}) {
            QCOMPARE(reply.error.value_or(BrevokError()).description,
                u"The server sent more data than expected."_s);
        }
#ifndef __SANITIZE_ADDRESS__ // which keeps what is freed
        QVERIFY2(peakBytes() - before < 48LL * 1024 * 1024, QByteArray::number(peakBytes() - before));
#endif
    }

    void aDrippingBodyEnds()
    {
        Stage stage;
        QVERIFY(stage.network.request({}).limits.wholeMs > 0); // where nobody asks for one, too
        stage.server.on(u"/drip"_s, {.body = QByteArray(1000000, ' '), .dripMs = 20});
        const ServiceReply reply = post(stage, stage.server.url(u"/drip"_s),
            [](ExchangeRequest &request) { request.limits.wholeMs = 500; });
        QCOMPARE(reply.error.value_or(BrevokError()).code, tooSlow);
        QCOMPARE(reply.error.value_or(BrevokError()).description, u"The request timed out."_s);
        QCOMPARE(stage.server.requests().size(), 1);
    }

    void redirectsOfAPost_data()
    {
        const Table<int, int> row;
        row("301", 301, ledAway);
        row("302", 302, ledAway);
        row("303", 303, ledAway);
        row("307", 307, 0);
        row("308", 308, 0);
        row("307, elsewhere", 307, ledAway);
        row("308, elsewhere", 308, ledAway);
    }

    void redirectsOfAPost()
    {
        const auto [status, code] = columns<int, int>();
        Stage stage;
        FaultServer elsewhere;
        elsewhere.on(u"/there"_s, Response::ok("{}"));
        stage.server.on(u"/there"_s, Response::ok("{}"));
        const QUrl target =
            (currentRow().contains(u"elsewhere"_s) ? elsewhere : stage.server).url(u"/there"_s);
        stage.server.on(u"/report"_s, Response::redirect(target.toEncoded(), status));
        QCOMPARE(post(stage, stage.server.url(u"/report"_s)).error.value_or(BrevokError()).code, code);
        QVERIFY(elsewhere.requests().isEmpty());
        QCOMPARE(stage.server.requests(u"/there"_s).value(0).body,
            code == 0 ? R"({"password":"secret"})"_ba : ""_ba);
    }

    void aChallengeIsNoReasonToSendAgain_data()
    {
        addRows({"NTLM", "Negotiate", "Basic realm=x", "Digest realm=x, nonce=y, qop=auth"});
    }

    void aChallengeIsNoReasonToSendAgain()
    {
        Stage stage;
        stage.server.on(u"/signin"_s,
            {.status = 401, .headers = {{"WWW-Authenticate", QTest::currentDataTag()}}, .body = "no"});
        const ServiceReply reply = post(stage, stage.server.url(u"/signin"_s));
        QCOMPARE(reply.status, 401);
        QCOMPARE(reply.body, "no"_ba);
        QCOMPARE(stage.server.requests().size(), 1);
        QVERIFY(stage.server.requests().constFirst().header("Authorization").isNull());
    }

    // The connection was kept, and breaks when the request is there: what the server did with it is unknown.
    void aBrokenConnectionIsNoReasonToSendAgain()
    {
        Stage stage;
        stage.server.on(u"/signin"_s, Response::reset());
        QCOMPARE(stage.list(u"/list"_s).body, "[]"_ba);
        QCOMPARE(post(stage, stage.server.url(u"/signin"_s)).error.value_or(BrevokError()).code, lost);
        QCOMPARE(stage.server.requests(u"/signin"_s).size(), 1);
    }

    void badProxies_data()
    {
        const Table<QByteArray, int> row;
        row("hangs", QByteArray(), timedOutCode);
        row("HTML",
            QByteArray("HTTP/1.1 403 No\r\nContent-Type: text/html\r\nContent-Length: 6\r\n\r\n<html>"),
            -1004);
        row("asks for a password",
            QByteArray("HTTP/1.1 407 Who\r\nProxy-Authenticate: Basic realm=x\r\nContent-Length: 0\r\n\r\n"),
            -1004);
        row("garbage", QByteArray("<html>\r\n\r\n"), refused);
        row("a head without end", QByteArray("HTTP/1.1 200 OK\r\nX: ") + QByteArray(8000000, 'x'), refused);
    }

    void badProxies()
    {
        const auto [answer, code] = columns<QByteArray, int>();
        BadProxy proxy(answer);
        for (const QByteArray user : {"", "ada:pass@"}) { // whom it refuses all the same
            proxy.asked.clear();
            qputenv("https_proxy", "http://" + user + "127.0.0.1:" + QByteArray::number(proxy.serverPort()));
            Stage stage;
            const ServiceReply reply = post(stage, QUrl(u"https://service.example/signin"_s),
                [](ExchangeRequest &request) { request.limits.silenceMs = 500; });
            qunsetenv("https_proxy");
            QVERIFY(reply.error && !reply.error->description.isEmpty());
            QCOMPARE(reply.status, 0);
            QCOMPARE(code == refused ? code : reply.error->code, code);
            QCOMPARE(proxy.asked.count("CONNECT "), 1);
            QVERIFY(proxy.asked.count("Proxy-Authorization: Basic ") <= (user.isEmpty() ? 0 : 1));
            QVERIFY(!proxy.asked.contains("secret"));
        }
    }

    void whatIsSent()
    {
        Stage stage;
        stage.server.on(u"/a"_s, Response::ok("{}"));
        post(stage, stage.server.url(u"/a"_s), [](ExchangeRequest &request) {
            request.headers.emplaceBack("Cookie", "SessionId=a\r\nX-Forged: 1");
        });
        const Request request = stage.server.requests().value(0);
        QVERIFY(QRegularExpression(u"^TolvaneBrevok/[0-9.]+$"_s)
                    .match(QString::fromLatin1(request.header("User-Agent")))
                    .hasMatch());
        QList<QByteArray> names;
        for (const auto &[name, value] : request.headers) {
            names.append(name);
        }
        QCOMPARE(names,
            (QList<QByteArray>{"Host", "User-Agent", "Content-Type", "Accept-Encoding", "Content-Length"}));
    }

private:
    ServiceReply post(
        Stage &stage, const QUrl &url, const std::function<void(ExchangeRequest &)> &change = {})
    {
        ExchangeRequest request = stage.network.request(url);
        request.method = "POST";
        request.headers = {{"Content-Type", "application/json"}};
        request.body = R"({"password":"secret"})";
        request.redirects = RedirectRule::SameOrigin;
        if (change) {
            change(request);
        }
        return stage.send(request);
    }
};

QTEST_GUILESS_MAIN(ExchangeTest)
#include "test_exchange.moc"
