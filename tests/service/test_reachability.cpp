// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/Connectivity.h"
#include "service/Reachability.h"
#include "ServiceStage.h"
#include "support/FakeRouteLookup.h"
#include "support/FolderTest.h"
#include "support/LogCapture.h"
#include "support/Table.h"

#include <QSignalSpy>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

/// The service, who asks whether it answers, and what the log has of it.
struct Service : ServiceStage {
    LogCapture log;
    FakeRouteLookup routes;
    Connectivity connectivity{network, routes};

    QStringList diagnose(const QUrl &url, int port)
    {
        QObject context;
        bool done = false;
        LogCapture::clear();
        connectivity.logConectivityTo(url, port, &context, [&] { done = true; });
        [&] {
            QTRY_VERIFY(done);
        }();
        return LogCapture::lines();
    }
};

} // namespace

class TestReachability final : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    // Reachable by the network, and by the local one; how the log has the flags, and the first phrase for
    // them.
    void statusOfFlags_data()
    {
        const Table<quint32, bool, int, int, QString, QString> row;
        row("nothing", 0, false, 0, 0, u"- -------"_s, u"Not Reachable "_s);
        row("reachable", Reachable, true, 1, 0, u"R -------"_s, u"Reachable "_s);
        row("all but reachable", 0xFFFFFFFD, false, 0, 0, u"- tcCiDld"_s, u"Transient Connection "_s);
        row("everything", 0xFFFFFFFF, false, 0, 1, u"R tcCiDld"_s, u"Transient Connection "_s);
        row("dial-up", Reachable | ConnectionRequired, false, 0, 0, u"R -c-----"_s, u"Reachable "_s);
        row("on demand", Reachable | ConnectionRequired | ConnectionOnDemand, false, 1, 0, u"R -c--D--"_s,
            u"Reachable "_s);
        row("on traffic", Reachable | ConnectionRequired | ConnectionOnTraffic, false, 1, 0, u"R -cC----"_s,
            u"Reachable "_s);
        row("on demand, with a person",
            Reachable | ConnectionRequired | ConnectionOnDemand | InterventionRequired, false, 0, 0,
            u"R -c-iD--"_s, u"Reachable "_s);
        row("direct", Reachable | IsDirect, true, 1, 1, u"R ------d"_s, u"Reachable "_s);
        row("automatic", ConnectionOnTraffic | ConnectionOnDemand, false, 0, 0, u"- --C-D--"_s,
            u"Connection Automatic "_s);
        row("a person's", ConnectionOnDemand | InterventionRequired, false, 0, 0, u"- ---iD--"_s,
            u"Connection On Demand "_s);
    }

    void statusOfFlags()
    {
        const LogCapture log;
        const auto [flags, way, network, localWiFi, marks, phrase] =
            columns<quint32, bool, int, int, QString, QString>();
        QCOMPARE(int(Reachability::networkStatusForFlags(flags)), network);
        QCOMPARE(int(Reachability::localWiFiStatusForFlags(flags)), localWiFi);
        QCOMPARE(LogCapture::lines(),
            QStringList({u"Reachability Flag Status: %1 networkStatusForFlags\n"_s.arg(marks),
                u"Reachability Flag Status: %1 localWiFiStatusForFlags\n"_s.arg(marks)}));
        QCOMPARE(reachabilityPhrase(flags), phrase);
        FakeRouteLookup routes;
        routes.flags = flags;
        NetworkFactory factory(
            {.baseUrl = {}, .extraAuthorities = {}, .reachabilityHost = u"public.example"_s});
        QCOMPARE(Connectivity(factory, routes).checkNetworkReachability(), way);
    }

    void constructorsAskForTheirHost()
    {
        const LogCapture log;
        FakeRouteLookup routes;
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

    void notifiersShareALookup()
    {
        FakeRouteLookup routes;
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

    void serviceAnswers_data()
    {
        const Table<Response, Response, bool, int> row;
        const Response endless{.body = QByteArray(1 << 20, 'x'), .repeat = 1 << 20};
        row("both answer", Response::ok("x"), Response::ok("y"), true, 2);
        row("GET is empty", Response::ok(""), Response::ok("y"), false, 1);
        row("GET is refused", Response::of(403, "x"), Response::ok("y"), false, 1);
        row("POST is empty", Response::ok("x"), Response::ok(""), false, 2);
        row("both are endless", endless, endless, true, 2);
    }

    void serviceAnswers()
    {
        const auto [get, post, reachable, requests] = columns<Response, Response, bool, int>();
        Service service;
        service.server.on(u"/"_s, [get = get, post = post](const Request &request) {
            return request.method == "GET" ? get : post;
        });
        std::optional<bool> answer;
        service.connectivity.checkAzureReachability(this, [&](bool yes) { answer = yes; });
        QVERIFY(!answer);
        QTRY_VERIFY_WITH_TIMEOUT(answer, 30000);
        QCOMPARE(*answer, reachable);
        QCOMPARE(service.server.requests().size(), requests);
        if (requests == 2) {
            QCOMPARE(service.server.requests().at(1).method, "POST");
            QVERIFY(service.server.requests().at(1).body.isEmpty());
        }
        if (currentRow() == u"both are endless"_s) {
            QTRY_COMPARE(service.server.connections(), 0);
        }
    }

    void diagnosisWithoutAServer()
    {
        Service service;
        QCOMPARE(service.diagnose(QUrl(), 443), QStringList{u"Connection: Invalid URL"_s});
        QCOMPARE(service.diagnose(QUrl(u"file:///a%1Ab"_s), 443),
            QStringList({u"Connection: file:///a%1Ab:443"_s, u"Connection: Invalid host"_s}));
        service.routes.flags = Reachable | ConnectionOnTraffic;
        QCOMPARE(service.diagnose(QUrl(u"https://no-such-host.invalid/x"_s), 443),
            QStringList(
                {u"Connection: https://no-such-host.invalid/x:443"_s, u"Connection: no-such-host.invalid"_s,
                    u"Connection: Can't resolve adress"_s, u"Connection: Host is Reachable (10)"_s}));
    }

    void diagnosis_data()
    {
        const Table<Response, QString> row;
        const RawHeaders echo{
            {"Set-Cookie", "secret=11111; Path=/"}, {"X-Echo", "you have secret%3D11111 \x1b[31m"}};
        row("valid", {.headers = echo, .body = "x"}, u"returned valid reply"_s);
        row("status", Response::of(503, "x"), u"responded 503"_s);
        row("empty", Response::ok(""), u"returned with empty reply"_s);
        row("broken", Response::hangUp(), u"returned error "_s);
    }

    void diagnosis()
    {
        const auto [response, get] = columns<Response, QString>();
        Service service;
        service.server.on(u"/probe"_s, response);
        service.server.on(u"/"_s, Response::ok("y"));
        const QStringList lines = service.diagnose(service.server.url(u"/probe"_s), service.server.port());
        QCOMPARE(lines.value(1), u"Connection: localhost"_s);
        QCOMPARE(lines.value(2), u"Connection: 127.0.0.1"_s);
        QCOMPARE(lines.value(3), u"Connection: Host is Reachable (2)"_s);
        QVERIFY2(lines.value(4).startsWith(u"Connection: GET "_s + get), qPrintable(lines.join(u'\n')));
        const bool valid = get.endsWith("valid reply"_L1);
        QCOMPARE(lines.value(5).startsWith("Connection: GET header fields: "_L1), valid);
        QCOMPARE(lines.value(valid ? 6 : 5), u"Connection: POST returned valid reply"_s);
        QCOMPARE(lines.value(5).contains(u"you have secret%3D(not logged)  [31m"_s), valid);
        QVERIFY(!lines.join(u'\n').contains(u"11111"_s));
        QCOMPARE(service.server.requests(u"/"_s).value(0).method, "POST");
    }

    void nobodyWaits()
    {
        Service service;
        service.server.on(u"/"_s, Response::ok("y"));
        auto context = std::make_unique<QObject>();
        int calls = 0;
        service.connectivity.checkAzureReachability(context.get(), [&](bool) { ++calls; });
        service.connectivity.logConectivityTo(service.server.url(), 443, context.get(), [&] { ++calls; });
        context.reset();
        QTRY_COMPARE(LogCapture::count(u"Connection: POST returned valid reply"_s), 1);
        QCOMPARE(calls, 0);
    }
};

QTEST_GUILESS_MAIN(TestReachability)
#include "test_reachability.moc"
