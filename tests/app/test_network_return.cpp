// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/NetworkReturn.h"
#include "service/Connectivity.h"
#include "service/NetworkFactory.h"
#include "support/FakeRouteLookup.h"

#include <QSignalSpy>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;

class NetworkReturnTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsOnceForEachLoss_data();
    void tellsOnceForEachLoss();
};

void NetworkReturnTest::tellsOnceForEachLoss_data()
{
    QTest::addColumn<QString>(
        "seen"); // at each change of the routes: + reachable, - not, c connection required
    QTest::addColumn<int>("returns");
    QTest::newRow("missing at the start") << QStringLiteral("-+") << 1;
    QTest::newRow("lost later") << QStringLiteral("+-+") << 1;
    QTest::newRow("several changes as it comes up") << QStringLiteral("-+++") << 1;
    QTest::newRow("up and down and up") << QStringLiteral("-+-+-+") << 1;
    QTest::newRow("another route") << QStringLiteral("+++") << 0;
    QTest::newRow("gone again") << QStringLiteral("-+-") << 0;
    QTest::newRow("needs a dial-up first") << QStringLiteral("-c") << 0;
}

void NetworkReturnTest::tellsOnceForEachLoss()
{
    QFETCH(const QString, seen);
    QFETCH(const int, returns);
    FakeRouteLookup routes;
    NetworkFactory network(
        {.baseUrl = {}, .extraAuthorities = {}, .reachabilityHost = QStringLiteral("public.example")});
    Connectivity connectivity(network, routes);
    const auto show = [&routes](QChar state) {
        routes.flags = state == u'-' ? ReachabilityFlags()
            : state == u'+'          ? ReachabilityFlags(Reachable)
                                     : Reachable | ConnectionRequired;
    };
    show(seen.front());
    NetworkReturn watch(routes, connectivity);
    const QSignalSpy returned(&watch, &NetworkReturn::returned);
    QVERIFY(routes.notifying);
    for (const QChar state : seen) {
        show(state);
        Q_EMIT routes.routesChanged();
    }
    // What comes of it is known by the time that a second loss has been noticed.
    QTRY_COMPARE(watch.findChild<QTimer *>()->isActive(), false);
    QCOMPARE(returned.size(), returns);
    show(u'-');
    Q_EMIT routes.routesChanged();
    show(u'+');
    Q_EMIT routes.routesChanged();
    QTRY_COMPARE(returned.size(), returns + 1);
}

QTEST_GUILESS_MAIN(NetworkReturnTest)
#include "test_network_return.moc"
