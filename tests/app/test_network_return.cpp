// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/NetworkReturn.h"
#include "service/Connectivity.h"
#include "service/NetworkFactory.h"
#include "support/FakeRouteLookup.h"
#include "support/InRow.h"

#include <QSet>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace brevok;
using namespace brevok::testing;

class NetworkReturnTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsOnceForEachLoss()
    {
        // at each change of the routes: + reachable, - not, c connection required
        const QList<std::tuple<const char *, int>> rows{
            {"missing at the start: -+", 1},
            {"lost later: +-+", 1},
            {"several changes as it comes up: -+++", 1},
            {"up and down and up: -+-+-+", 1},
            {"another route: +++", 0},
            {"gone again: -+-", 0},
            {"needs a dial-up first: -c", 0},
        };
        for (const auto &[name, returns] : rows) {
            const InRow in(name);
            const QString seen = QString::fromLatin1(name).section(u' ', -1);
            FakeRouteLookup routes;
            NetworkFactory network({.baseUrl = {},
                .extraAuthorities = {},
                .reachabilityHost = QStringLiteral("public.example")});
            Connectivity connectivity(network, routes);
            const auto show = [&routes](QChar state) {
                routes.flags = state == u'-' ? ReachabilityFlags()
                    : state == u'+'          ? ReachabilityFlags(Reachable)
                                             : Reachable | ConnectionRequired;
            };
            show(seen.front());
            NetworkReturn watch(routes, connectivity, [] { return 0; });
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
    }

    // Each waits for a moment of its own, and no longer than it is told.
    void manyMachinesDoNotComeAtOnce()
    {
        constexpr int machines = 200;
        constexpr int spreadMs = 60000;
        FakeRouteLookup routes;
        NetworkFactory network(
            {.baseUrl = {}, .extraAuthorities = {}, .reachabilityHost = QStringLiteral("public.example")});
        Connectivity connectivity(network, routes);
        QSet<int> seconds;
        for (int i = 0; i < machines; ++i) {
            routes.flags = ReachabilityFlags();
            int spread = 0;
            NetworkReturn watch(routes, connectivity, [&spread] { return spread; });
            spread = spreadMs; // a list has come meanwhile
            routes.flags = ReachabilityFlags(Reachable);
            Q_EMIT routes.routesChanged();
            const QTimer *turn = watch.findChild<QTimer *>();
            QVERIFY(turn->isActive() && turn->interval() >= 1000 && turn->interval() <= 1000 + spreadMs);
            seconds.insert(turn->interval() / 1000);
        }
        QVERIFY2(seconds.size() > 30, qPrintable(QString::number(seconds.size())));
    }
};

QTEST_GUILESS_MAIN(NetworkReturnTest)
#include "test_network_return.moc"
