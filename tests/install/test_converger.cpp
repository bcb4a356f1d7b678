// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "FlowRig.h"
#include "install/Converger.h"
#include "platform/PropertyLists.h"
#include "service/BrevokSession.h"
#include "service/Connectivity.h"
#include "service/NetworkFactory.h"
#include "support/FakeRouteLookup.h"
#include "support/IdleUpdater.h"

#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

// A signed-in program with one package of one build and one target, whose owner wants that package.
struct Desk {
    InstallRig rig{{{u"OrlecSessionData"_s, QString(), Record{{u"SessionId"_s, u"abc"_s}}}}};
    QString target = rig.addTarget(u"InDesign 2019"_s, u"140"_s);
    IdleUpdater updater;
    FakeRouteLookup routes;
    NetworkFactory network{{}};
    Connectivity connectivity{network, routes};
    BrevokSession session{rig.state, network, connectivity, rig.alerts, updater};
    Converger::Wishes wishes = PackageWishes{.required = {u"P"_s}};
    Converger converger{{session, rig.plugins, rig.packages, rig.flow, rig.state, [this] { return wishes; },
        [] {
            return false;
        }}};
    int ended = 0;
    ConvergeOutcome outcome;

    Desk()
    {
        rig.plugins.updateWithArray({InstallRig::build(u"P"_s, u"Plug"_s, 140)});
        rig.addPackage(u"Pack"_s, u"P"_s);
        rig.service.lists.clear(); // those of the start
    }
    void run()
    {
        converger.run(false, [this](const ConvergeOutcome &its) {
            ++ended;
            outcome = its;
        });
    }
    void answerLists(const ServiceReply &reply)
    {
        while (!rig.service.lists.isEmpty()) {
            rig.service.lists.takeFirst().handler(reply);
        }
    }
};

} // namespace

class ConvergerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void listsThatFailAreToldAndTheRestDone_data();
    void listsThatFailAreToldAndTheRestDone();
    void aSecondRunWaits();
    void wishesThatCannotBeReadChangeNothing();
};

void ConvergerTest::listsThatFailAreToldAndTheRestDone_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("why");
    QTest::newRow("the session expired") << 401 << QByteArray() << u"Server responded with HTTP code: 401."_s;
    QTest::newRow("no list") << 200 << QByteArray("<html>") << u"Unexpected server response."_s;
}

void ConvergerTest::listsThatFailAreToldAndTheRestDone()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QFETCH(QString, why);
    Desk desk;
    desk.run();
    QTRY_COMPARE(desk.rig.service.lists.size(), 2);
    desk.answerLists({.status = status, .body = body});
    QTRY_COMPARE(desk.rig.service.downloads.size(), 1);
    desk.rig.answerDownload(InstallRig::archiveOf(u"Plug"_s, 140));
    QTRY_COMPARE(desk.ended, 1);
    const QString sentence = u"The list of %1 could not be read (%2); the one of the last time counts."_s;
    QCOMPARE(desk.outcome.failureSentences(),
        (QStringList{sentence.arg(u"plug-ins"_s, why), sentence.arg(u"packages"_s, why)}));
    QCOMPARE(desk.outcome.packagesChanged(u"installed"_s), QStringList{u"Pack"_s});
    QVERIFY(bundleInformation(pluginIn(desk.target, u"Plug"_s)));
    QVERIFY(desk.rig.presenter.shown.isEmpty());
}

void ConvergerTest::aSecondRunWaits()
{
    Desk desk;
    desk.run();
    desk.run();
    for (int run = 1; run <= 2; ++run) {
        QTRY_COMPARE(desk.rig.service.lists.size(), 2);
        QCOMPARE(desk.ended, run - 1);
        desk.answerLists({.status = 500});
        if (run == 1) {
            QTRY_COMPARE(desk.rig.service.downloads.size(), 1);
            QVERIFY(desk.rig.service.lists.isEmpty());
            desk.rig.answerDownload(InstallRig::archiveOf(u"Plug"_s, 140));
        }
        QTRY_COMPARE(desk.ended, run);
        QCOMPARE(desk.outcome.changed.size(), run == 1 ? 1 : 0);
    }
}

void ConvergerTest::wishesThatCannotBeReadChangeNothing()
{
    Desk desk;
    desk.wishes = u"policy.conf, line 2: nonsense"_s;
    desk.run();
    QTRY_COMPARE(desk.ended, 1);
    QCOMPARE(desk.outcome.failed.size(), 1);
    QVERIFY(desk.outcome.failureSentences().constFirst().endsWith(u"policy.conf, line 2: nonsense"_s));
    QVERIFY(desk.rig.service.lists.isEmpty());
}

QTEST_GUILESS_MAIN(ConvergerTest)
#include "test_converger.moc"
