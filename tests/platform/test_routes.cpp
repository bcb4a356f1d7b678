// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/network/RouteTable.h"
#include "platform/linux/network/RouteTableLookup.h"
#include "support/FolderTest.h"
#include "support/Table.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <cstdio>
#include <cstring>
#include <sched.h>

#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

constexpr int notPermitted = 77;

bool switchLoopbackOn()
{
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request = {};
    std::strcpy(request.ifr_name, "lo");
    request.ifr_flags = IFF_UP;
    const bool done = ::ioctl(socket, SIOCSIFFLAGS, &request) == 0;
    ::close(socket);
    return done;
}

// Runs in a network of its own that has no route at all.
int runUnplugged(int argc, char **argv)
{
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0) {
        return notPermitted;
    }
    const QCoreApplication application(argc, argv);
    RouteTableLookup lookup;
    for (const QString &host : {u"www.example.com"_s, u"192.0.2.1"_s, u"2001:db8::1"_s, u"0.0.0.0"_s}) {
        if (lookup.flagsForHost(host) != std::optional<ReachabilityFlags>(0)) {
            return 1;
        }
    }
    QSignalSpy changes(&lookup, &RouteLookup::routesChanged);
    if (!lookup.startNotifier() || !lookup.startNotifier() || !switchLoopbackOn() || !changes.wait()) {
        return 2;
    }
    const bool local = lookup.flagsForHost(u"127.0.0.1"_s) == (Reachable | IsLocalAddress);
    return local && lookup.flagsForHost(u"www.example.com"_s) == ReachabilityFlags(0) ? 0 : 3;
}

QByteArray ipv4Head()
{
    return "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\t\tMTU\tWindow\tIRTT\n";
}

} // namespace

class RoutesTest : public testing::FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void tablesTellOfTheInternet_data()
    {
        const testing::Table<QByteArray, bool> row;
        const QByteArray zero(32, '0');
        row("default", "eth0\t00000000\t010200C0\t0003\t0\t0\t0\t00000000\t0\t0\t0   \n", true);
        row("point to point", "ppp0\t00000000\t00000000\t0001\t0\t0\t0\t00000000\t0\t0\t0\n", true);
        row("half", "tun0\t00000080\t0100000A\t0003\t0\t0\t0\t00000080\t0\t0\t0\n", true);
        row("link only", "eth0\t000200C0\t00000000\t0001\t0\t0\t0\t00FFFFFF\t0\t0\t0\n", false);
        row("down", "eth0\t00000000\t010200C0\t0002\t0\t0\t0\t00000000\t0\t0\t0\n", false);
        row("reject", "*\t00000000\t00000000\t0201\t0\t0\t0\t00000000\t0\t0\t0\n", false);
        row("loopback", "lo\t00000000\t00000000\t0001\t0\t0\t0\t00000000\t0\t0\t0\n", false);
        row("cut short", "eth0\t00000000\t010200C0\t0003\t0", false);
        row("no numbers", "eth0\tx\ty\tz\t0\t0\t0\tw\t0\t0\t0\n", false);
        row("binary", QByteArray(5000, '\xff') + QByteArray(5000, '\0'), false);
        row("empty", "\n\n", false);
        row("default 6", "00 " + zero + " 00 fd" + QByteArray(30, '1') + " 00000400 1 0 00000003 eth0\n",
            true);
        row("unreachable 6", "00 " + zero + " 00 " + zero + " ffffffff 1 0 00200200 lo\n", false);
        row("too long 6", "ff " + zero + " 00 " + zero + " 0 1 0 00000003 eth0\n", false);
        row("cut short 6", "00 " + zero, false);
    }

    void tablesTellOfTheInternet()
    {
        const auto [lines, reaches] = testing::columns<QByteArray, bool>();
        const bool isSix = testing::currentRow().endsWith(u" 6");
        const RouteTable table{.ipv4 = ipv4Head() + (isSix ? QByteArray() : lines),
            .ipv6 = isSix ? QByteArray(32, '0') + ' ' + lines : QByteArray()};
        QCOMPARE(table.hasDefaultRoute(), reaches);
    }

    void networksOfTheLinkAreDirect()
    {
        const QByteArray zero(32, '0');
        const RouteTable table{.ipv4 = ipv4Head()
                + "eth0\t00000000\t010200C0\t0003\t0\t0\t0\t00000000\t0\t0\t0\n"
                + "eth0\t000200C0\t00000000\t0001\t0\t0\t0\t00FFFFFF\t0\t0\t0\n"
                + "eth0\tC00200C0\t010200C0\t0003\t0\t0\t0\tC0FFFFFF\t0\t0\t0\n",
            .ipv6 = "fd" + QByteArray(30, '0') + " 40 " + zero + " 00 " + zero + " 100 1 0 00000001 eth0\n"
                + zero + " 00 " + zero + " 00 fd" + QByteArray(29, '0') + "1 400 1 0 00000003 eth0\n"};
        // Beyond the link, and beyond a gateway within it.
        for (const QString &address : {u"198.51.100.1"_s, u"192.0.2.200"_s, u"2001:db8::1"_s}) {
            QVERIFY2(!table.isDirect(InternetAddress::fromText(address)), qPrintable(address));
        }
        QVERIFY(table.isDirect(InternetAddress::fromText(u"192.0.2.77"_s)));
        QVERIFY(table.isDirect(InternetAddress::fromText(u"fd00::5"_s)));
    }

    void localAddressesAreReachable()
    {
        const RouteTableLookup lookup;
        for (const QString &host : {u"127.0.0.1"_s, u"localhost"_s, u"LocalHost"_s, u"127.1.2.3"_s}) {
            QVERIFY2(lookup.flagsForHost(host) == (Reachable | IsLocalAddress), qPrintable(host));
        }
        QCOMPARE(lookup.flagsForHost({}), std::optional<ReachabilityFlags>());
        QCOMPARE(lookup.flagsForAddress({}), std::optional<ReachabilityFlags>());
        // A name says no more than the way to the internet does, even one that cannot exist.
        QCOMPARE(lookup.flagsForHost(u"no such host.invalid"_s),
            lookup.flagsForAddress(InternetAddress::fromText(u"0.0.0.0"_s)));
    }

    void anUnpluggedMachineReachesNothing()
    {
        QProcess unplugged;
        unplugged.setProcessChannelMode(QProcess::ForwardedChannels);
        unplugged.start(QCoreApplication::applicationFilePath(), {u"--unplugged"_s});
        QVERIFY(unplugged.waitForFinished());
        if (unplugged.exitCode() == notPermitted) {
            QSKIP("networks of one's own are not permitted here");
        }
        QCOMPARE(unplugged.exitCode(), 0);
    }
};

int main(int argc, char **argv)
{
    if (argc > 1 && std::strcmp(argv[1], "--unplugged") == 0) {
        return runUnplugged(argc, argv);
    }
    const QCoreApplication application(argc, argv);
    RoutesTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_routes.moc"
