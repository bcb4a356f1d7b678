// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "../install/InstallRig.h"
#include "control/ControlService.h"
#include "platform/PropertyLists.h"
#include "platform/SelfUpdater.h"
#include "reporting/BrevokUsageReporter.h"
#include "reporting/BugReporter.h"
#include "service/BrevokSession.h"
#include "service/Connectivity.h"
#include "service/NetworkFactory.h"
#include "support/FakeRouteLookup.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

class NoUpdater final : public SelfUpdater {
public:
    [[nodiscard]] bool automaticallyChecksForUpdates() const override { return false; }
    void setAutomaticallyChecksForUpdates(bool) override { }
    void checkForUpdates() override { }
    void checkForUpdatesInBackground() override { }
};

class NoSettings final : public SettingsAccess {
public:
    [[nodiscard]] bool startAtLogin() const override { return false; }
    void setStartAtLogin(bool) override { }
    [[nodiscard]] bool showNotifications() const override { return false; }
    void setShowNotifications(bool) override { }
    [[nodiscard]] bool checkForUpdates() const override { return false; }
    void setCheckForUpdates(bool) override { }
    [[nodiscard]] bool autoUpdate() const override { return false; }
    void setAutoUpdate(bool) override { }
    [[nodiscard]] int logLevel() const override { return 0; }
    void setLogLevel(int) override { }
};

const QString busName = u"com.tolvane.brevok.Test"_s;

// The application behind the bus, with a service whose answers the test gives.
struct Application {
    InstallRig rig;
    NoUpdater updater;
    NoSettings settings;
    FakeRouteLookup routes;
    NetworkFactory network{{}};
    Connectivity connectivity{network, routes};
    MainBundle bundle{u"/nowhere/tolvane-brevok"_s, rig.folder.path()};
    BrevokSession session{rig.state, network, connectivity, rig.alerts, updater};
    BrevokUsageReporter usageReporter;
    BugReporter bugReporter{{network, connectivity, &rig.packages, &rig.plugins, &rig.targets,
        [] { return QString(); }, bundle, {}}};
    ControlService control;
    // A call on the application's own connection would not go over the bus.
    QDBusConnection caller = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"caller"_s);

    Application()
    {
        control.setCollaborators({session, rig.plugins, rig.packages, rig.targets, rig.flow, rig.state,
            settings, [] { return false; }, bugReporter, usageReporter});
    }
    QDBusPendingCall check() const
    {
        return caller.asyncCall(QDBusMessage::createMethodCall(
            busName, u"/com/tolvane/brevok/Control"_s, u"com.tolvane.brevok.Control1"_s, u"Check"_s));
    }
    // Answers the request @p index with one plug-in or package called @p name.
    void answer(qsizetype index, const QString &name, bool well = true)
    {
        const FakeServiceClient::ListRequest request = rig.service.lists.takeAt(index);
        QJsonObject element = InstallRig::build(name, name, 140);
        const QByteArray body = QJsonDocument(QJsonArray{element}).toJson();
        request.handler({.status = well ? 200 : 500, .body = body, .headers = {}, .error = {}});
    }
    [[nodiscard]] bool knows(const QString &name) const
    {
        return rig.plugins.pluginIndex().contains(name) && !rig.package(name).isEmpty();
    }
};

} // namespace

class ControlCheckTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void itWaitsForItsOwnAnswers_data();
    void itWaitsForItsOwnAnswers();
    void withoutANetworkItEndsAtOnce();
};

void ControlCheckTest::itWaitsForItsOwnAnswers_data()
{
    QTest::addColumn<bool>("pluginsLast");
    QTest::addColumn<bool>("well");
    QTest::newRow("plug-ins last") << true << true;
    QTest::newRow("packages last") << false << true;
    QTest::newRow("the last one fails") << true << false;
}

void ControlCheckTest::itWaitsForItsOwnAnswers()
{
    QFETCH(bool, pluginsLast);
    QFETCH(bool, well);
    Application application;
    application.control.publish(QDBusConnection::sessionBus());
    QVERIFY(QDBusConnection::sessionBus().registerService(busName));
    QCOMPARE(application.rig.service.lists.size(), 2); // those of the start
    const QDBusPendingCall call = application.check();
    QTRY_COMPARE(application.rig.service.lists.size(), 4);

    const QSignalSpy settled(&application.rig.packages, &BrevokPackages::statusesSettled);
    application.answer(0, u"old"_s);
    application.answer(0, u"old"_s);
    QTRY_VERIFY(application.knows(u"old"_s));
    QTRY_VERIFY(!settled.isEmpty());
    application.answer(pluginsLast ? 1 : 0, u"new"_s);
    QTRY_VERIFY(!application.rig.packages.updating() && !application.rig.packages.needUpdate());
    // An answer to the call would be here before that to a later one.
    const QDBusPendingCall later = application.check();
    QTRY_COMPARE(application.rig.service.lists.size(), 3);
    QVERIFY(!call.isFinished());

    application.answer(0, u"new"_s, well);
    QTRY_VERIFY(call.isFinished());
    QCOMPARE(call.reply().arguments().value(0).toStringList().size(), well ? 0 : 1);
    QVERIFY(!well || application.knows(u"new"_s));
    QVERIFY(!later.isFinished());
    QDBusConnection::sessionBus().unregisterService(busName);
}

void ControlCheckTest::withoutANetworkItEndsAtOnce()
{
    Application application;
    application.control.publish(QDBusConnection::sessionBus());
    QVERIFY(QDBusConnection::sessionBus().registerService(busName));
    application.rig.service.reachable = false;
    const QDBusPendingCall call = application.check();
    QTRY_VERIFY(call.isFinished());
    QCOMPARE(call.reply().arguments().value(0).toStringList().size(), 2);
    QDBusConnection::sessionBus().unregisterService(busName);
}

QTEST_GUILESS_MAIN(ControlCheckTest)
#include "test_control_check.moc"
