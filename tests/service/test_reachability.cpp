// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"
#include "service/Connectivity.h"
#include "service/NetworkFactory.h"
#include "service/Reachability.h"
#include "support/FakeRouteLookup.h"
#include "support/LogCapture.h"
#include "support/servers/FaultServer.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

class TestReachability final : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<LogCapture> log;
    FakeRouteLookup routes;

    static ServiceConfiguration configuration(const FaultServer &server)
    {
        return {.baseUrl = server.url(),
            .extraAuthorities = TestCertificates::shared().authorities(),
            .reachabilityHost = u"public.example"_s,
            .requestTimeoutMs = 5000};
    }
    static QStringList diagnose(Connectivity &connectivity, const QUrl &url, int port);

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        log = std::make_unique<LogCapture>();
        routes.flags = Reachable;
    }
    void cleanup() { log.reset(); }
    void cleanupTestCase() { QVERIFY(finishBackgroundWork(10000)); }

    void statusOfFlags_data();
    void statusOfFlags();
    void constructorsAskForTheirHost();
    void notifiersShareALookup();
    void phrases_data();
    void phrases();
    void networkIsReachable_data();
    void networkIsReachable();
    void serviceAnswers_data();
    void serviceAnswers();
    void endlessAnswerIsOne();
    void diagnosisOfABadAddress();
    void diagnosisOfAnUnknownHost();
    void diagnosis_data();
    void diagnosis();
    void whatIsPostedStaysWithTheService();
    void nobodyWaits();
};

void TestReachability::statusOfFlags_data()
{
    QTest::addColumn<quint32>("flags");
    QTest::addColumn<int>("network");
    QTest::addColumn<int>("localWiFi");
    QTest::addColumn<QString>("marks");
    const auto row = [](const char *name, quint32 flags, int network, int localWiFi, const QString &marks) {
        QTest::newRow(name) << flags << network << localWiFi << marks;
    };
    row("nothing", 0, 0, 0, u"- -------"_s);
    row("reachable", Reachable, 1, 0, u"R -------"_s);
    row("all but reachable", 0xFFFFFFFD, 0, 0, u"- tcCiDld"_s);
    row("everything", 0xFFFFFFFF, 0, 1, u"R tcCiDld"_s);
    row("dial-up", Reachable | ConnectionRequired, 0, 0, u"R -c-----"_s);
    row("on demand", Reachable | ConnectionRequired | ConnectionOnDemand, 1, 0, u"R -c--D--"_s);
    row("on traffic", Reachable | ConnectionRequired | ConnectionOnTraffic, 1, 0, u"R -cC----"_s);
    row("on demand, with a person",
        Reachable | ConnectionRequired | ConnectionOnDemand | InterventionRequired, 0, 0, u"R -c-iD--"_s);
    row("direct", Reachable | IsDirect | TransientConnection, 1, 1, u"R t-----d"_s);
    row("local", Reachable | IsLocalAddress, 1, 0, u"R -----l-"_s);
}

void TestReachability::statusOfFlags()
{
    QFETCH(quint32, flags);
    QFETCH(QString, marks);
    QTEST(int(Reachability::networkStatusForFlags(flags)), "network");
    QTEST(int(Reachability::localWiFiStatusForFlags(flags)), "localWiFi");
    QCOMPARE(LogCapture::lines(),
        QStringList({u"Reachability Flag Status: %1 networkStatusForFlags\n"_s.arg(marks),
            u"Reachability Flag Status: %1 localWiFiStatusForFlags\n"_s.arg(marks)}));
}

void TestReachability::constructorsAskForTheirHost()
{
    QVERIFY(!Reachability::reachabilityWithHostName(routes, {}));
    QVERIFY(!Reachability::reachabilityWithAddress(routes, InternetAddress()));
    const auto byName = Reachability::reachabilityWithHostName(routes, u"a.example"_s);
    const auto internet = Reachability::reachabilityForInternetConnection(routes);
    const auto localWiFi = Reachability::reachabilityForLocalWiFi(routes);
    routes.asked.clear();
    QCOMPARE(byName->currentReachabilityStatus(), NetworkStatus::Reachable);
    QCOMPARE(internet->currentReachabilityStatus(), NetworkStatus::Reachable);
    QCOMPARE(localWiFi->currentReachabilityStatus(), NetworkStatus::NotReachable);
    QCOMPARE(routes.asked, QStringList({u"a.example"_s, u"0.0.0.0"_s, u"169.254.0.0"_s}));
    routes.flags = Reachable | ConnectionRequired;
    QVERIFY(byName->connectionRequired());
    routes.flags.reset();
    QVERIFY(!byName->connectionRequired());
    QCOMPARE(internet->currentReachabilityStatus(), NetworkStatus::NotReachable);
}

void TestReachability::notifiersShareALookup()
{
    auto first = Reachability::reachabilityForInternetConnection(routes);
    auto second = Reachability::reachabilityForInternetConnection(routes);
    QSignalSpy changes(first.get(), &Reachability::networkReachabilityChanged);
    routes.notifierWorks = false;
    QVERIFY(!first->startNotifier());
    routes.notifierWorks = true;
    QVERIFY(first->startNotifier() && first->startNotifier() && second->startNotifier());
    Q_EMIT routes.routesChanged();
    QCOMPARE(changes.count(), 1);
    second.reset();
    QVERIFY(routes.notifying);
    first->stopNotifier();
    QVERIFY(!routes.notifying);
    Q_EMIT routes.routesChanged();
    QCOMPARE(changes.count(), 1);
}

void TestReachability::phrases_data()
{
    QTest::addColumn<quint32>("flags");
    QTest::addColumn<QString>("phrase");
    QTest::newRow("none") << 0U << u"Not Reachable "_s;
    QTest::newRow("first wins") << 0xFFFFFFFFU << u"Transient Connection "_s;
    QTest::newRow("traffic") << quint32(ConnectionOnTraffic | ConnectionOnDemand)
                             << u"Connection Automatic "_s;
    QTest::newRow("demand before intervention")
        << quint32(ConnectionOnDemand | InterventionRequired) << u"Connection On Demand "_s;
}

void TestReachability::phrases()
{
    QFETCH(quint32, flags);
    QTEST(reachabilityPhrase(flags), "phrase");
}

void TestReachability::networkIsReachable_data()
{
    QTest::addColumn<QString>("host");
    QTest::addColumn<std::optional<quint32>>("flags");
    QTest::addColumn<bool>("reachable");
    const QString host = u"public.example"_s;
    using Flags = std::optional<quint32>;
    QTest::newRow("reachable") << host << Flags(Reachable | IsDirect) << true;
    QTest::newRow("no flags") << host << Flags() << false;
    QTest::newRow("unreachable") << host << Flags(IsDirect) << false;
    QTest::newRow("dial-up") << host << Flags(Reachable | ConnectionRequired | ConnectionOnDemand) << false;
    QTest::newRow("no host") << QString() << Flags(Reachable) << false;
}

void TestReachability::networkIsReachable()
{
    QFETCH(QString, host);
    QFETCH(std::optional<quint32>, flags);
    ServiceConfiguration configuration;
    configuration.reachabilityHost = host;
    NetworkFactory network(configuration);
    routes.flags = flags;
    QTEST(Connectivity(network, routes).checkNetworkReachability(), "reachable");
}

void TestReachability::serviceAnswers_data()
{
    QTest::addColumn<int>("getStatus");
    QTest::addColumn<QByteArray>("getBody");
    QTest::addColumn<QByteArray>("postBody");
    QTest::addColumn<bool>("reachable");
    QTest::addColumn<int>("requests");
    QTest::newRow("both answer") << 200 << QByteArray("x") << QByteArray("y") << true << 2;
    QTest::newRow("GET is empty") << 200 << QByteArray() << QByteArray("y") << false << 1;
    QTest::newRow("GET is refused") << 403 << QByteArray("x") << QByteArray("y") << false << 1;
    QTest::newRow("POST is empty") << 200 << QByteArray("x") << QByteArray() << false << 2;
}

void TestReachability::serviceAnswers()
{
    QFETCH(int, getStatus);
    QFETCH(QByteArray, getBody);
    QFETCH(QByteArray, postBody);
    FaultServer server;
    server.on(u"/"_s, [&](const Request &request) {
        return request.method == "GET" ? Response::of(getStatus, getBody) : Response::ok(postBody);
    });
    NetworkFactory network(configuration(server));
    Connectivity connectivity(network, routes);
    std::optional<bool> answer;
    connectivity.checkAzureReachability(this, [&](bool reachable) { answer = reachable; });
    QVERIFY(!answer);
    QTRY_VERIFY(answer);
    QTEST(*answer, "reachable");
    QTEST(int(server.requests().size()), "requests");
    if (server.requests().size() == 2) {
        QCOMPARE(server.requests().at(1).method, "POST");
        QVERIFY(server.requests().at(1).body.isEmpty());
    }
}

void TestReachability::endlessAnswerIsOne()
{
    FaultServer server;
    server.on(u"/"_s, Response{.body = QByteArray(1 << 20, 'x'), .repeat = 1 << 20});
    NetworkFactory network(configuration(server));
    Connectivity connectivity(network, routes);
    std::optional<bool> answer;
    connectivity.checkAzureReachability(this, [&](bool reachable) { answer = reachable; });
    QTRY_VERIFY_WITH_TIMEOUT(answer, 30000);
    QVERIFY(*answer);
    QTRY_COMPARE(server.connections(), 0);
}

QStringList TestReachability::diagnose(Connectivity &connectivity, const QUrl &url, int port)
{
    QObject context;
    bool done = false;
    connectivity.logConectivityTo(url, port, &context, [&] { done = true; });
    [&] {
        QTRY_VERIFY(done);
    }();
    return LogCapture::lines();
}

void TestReachability::diagnosisOfABadAddress()
{
    NetworkFactory network({});
    Connectivity connectivity(network, routes);
    QCOMPARE(diagnose(connectivity, QUrl(), 443), QStringList{u"Connection: Invalid URL"_s});
    LogCapture::clear();
    QCOMPARE(diagnose(connectivity, QUrl(u"file:///a%1Ab"_s), 443),
        QStringList({u"Connection: file:///a%1Ab:443"_s, u"Connection: Invalid host"_s}));
}

void TestReachability::diagnosisOfAnUnknownHost()
{
    NetworkFactory network({});
    Connectivity connectivity(network, routes);
    routes.flags = Reachable | ConnectionOnTraffic;
    QCOMPARE(diagnose(connectivity, QUrl(u"https://no-such-host.invalid/x"_s), 443),
        QStringList(
            {u"Connection: https://no-such-host.invalid/x:443"_s, u"Connection: no-such-host.invalid"_s,
                u"Connection: Can't resolve adress"_s, u"Connection: Host is Reachable (10)"_s}));
}

void TestReachability::diagnosis_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("broken");
    QTest::addColumn<QString>("get");
    QTest::newRow("valid") << 200 << QByteArray("x") << false << u"returned valid reply"_s;
    QTest::newRow("status") << 503 << QByteArray("x") << false << u"responded 503"_s;
    QTest::newRow("empty") << 200 << QByteArray() << false << u"returned with empty reply"_s;
    QTest::newRow("broken") << 200 << QByteArray() << true << u"returned error "_s;
}

void TestReachability::diagnosis()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QFETCH(bool, broken);
    QFETCH(QString, get);
    FaultServer server;
    server.on(u"/probe"_s,
        broken ? Response::hangUp()
               : Response{.status = status,
                   .headers = {{"Set-Cookie", "secret=11111; Path=/"},
                       {"X-Echo", "you have secret%3D11111 \x1b[31m"}},
                   .body = body});
    server.on(u"/"_s, Response::ok("y"));
    NetworkFactory network(configuration(server));
    Connectivity connectivity(network, routes);
    const QStringList lines = diagnose(connectivity, server.url(u"/probe"_s), server.port());
    QCOMPARE(lines.value(1), u"Connection: localhost"_s);
    QCOMPARE(lines.value(2), u"Connection: 127.0.0.1"_s);
    QCOMPARE(lines.value(3), u"Connection: Host is Reachable (2)"_s);
    QVERIFY2(lines.value(4).startsWith(u"Connection: GET "_s + get), qPrintable(lines.join(u'\n')));
    const bool valid = get.endsWith("valid reply"_L1);
    QCOMPARE(lines.value(5).startsWith("Connection: GET header fields: "_L1), valid);
    QCOMPARE(lines.value(valid ? 6 : 5), u"Connection: POST returned valid reply"_s);
    QCOMPARE(lines.value(5).contains(u"you have secret%3D(not logged)  [31m"_s), valid);
    QVERIFY(!LogCapture::mentions(u"11111"_s));
    QCOMPARE(server.requests(u"/"_s).value(0).method, "POST");
}

void TestReachability::whatIsPostedStaysWithTheService()
{
    FaultServer server;
    FaultServer other;
    other.on(u"/"_s, Response::ok("y"));
    server.on(u"/"_s, Response::redirect(other.url(u"/"_s).toEncoded(), 307));
    NetworkFactory network(configuration(server));
    Connectivity connectivity(network, routes);
    const QStringList lines = diagnose(connectivity, server.url(u"/"_s), server.port());
    QCOMPARE(lines.count(u"Connection: GET returned valid reply"_s), 1);
    QCOMPARE(lines.last(),
        u"Connection: POST returned error The server redirected the request to another server."_s);
    QCOMPARE(server.requests().size(), 2);
    QCOMPARE(other.requests().size(), 1);
    QCOMPARE(other.requests().constFirst().method, "GET");
}

void TestReachability::nobodyWaits()
{
    FaultServer server;
    server.on(u"/"_s, Response::ok("y"));
    NetworkFactory network(configuration(server));
    Connectivity connectivity(network, routes);
    auto context = std::make_unique<QObject>();
    int calls = 0;
    connectivity.checkAzureReachability(context.get(), [&](bool) { ++calls; });
    connectivity.logConectivityTo(server.url(), 443, context.get(), [&] { ++calls; });
    context.reset();
    QTRY_COMPARE(LogCapture::count(u"Connection: POST returned valid reply"_s), 1);
    QCOMPARE(calls, 0);
}

QTEST_GUILESS_MAIN(TestReachability)
#include "test_reachability.moc"
