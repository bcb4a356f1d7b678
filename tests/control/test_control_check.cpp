// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "../install/InstallRig.h"
#include "control/ControlService.h"
#include "install/Converger.h"
#include "install/UpdateRun.h"
#include "platform/PropertyLists.h"
#include "platform/StorageWatch.h"
#include "reporting/BrevokUsageReporter.h"
#include "reporting/BugReporter.h"
#include "service/BrevokSession.h"
#include "service/Connectivity.h"
#include "service/NetworkFactory.h"
#include "support/FakeRouteLookup.h"
#include "support/IdleUpdater.h"
#include "support/InRow.h"
#include "support/MemorySettingsStore.h"
#include "support/StoredSettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

// The application behind the bus, with a service whose answers the test gives.
struct Application {
    InstallRig rig;
    IdleUpdater updater;
    MemorySettingsStore store;
    StoredSettings settings{store};
    StorageWatch storage{store, rig.state};
    FakeRouteLookup routes;
    NetworkFactory network{{}};
    Connectivity connectivity{network, routes};
    MainBundle bundle{u"/nowhere/tolvane-brevok"_s, rig.folder.path()};
    BrevokSession session{rig.state, network, connectivity, rig.alerts, updater};
    BrevokUsageReporter usageReporter;
    BugReporter bugReporter{{network, connectivity, &rig.packages, &rig.plugins, &rig.targets,
        [] { return QString(); }, bundle, {}}};
    UpdateRun updates{rig.flow, rig.packages};
    Converger converger{
        {session, rig.plugins, rig.packages, rig.flow, rig.state, [] { return Converger::Wishes(); },
            [] {
                return false;
            }}};
    ControlService control;
    // A call on the application's own connection would not go over the bus.
    QDBusConnection caller = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"caller"_s);

    Application()
    {
        control.setCollaborators({session, rig.plugins, rig.packages, rig.targets, rig.flow, updates,
            rig.state, settings, storage, [] { return false; }, bugReporter, usageReporter, converger});
        control.publish(QDBusConnection::sessionBus());
    }
    [[nodiscard]] QDBusPendingCall call(const QString &method, const QVariantList &arguments = {}) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(QDBusConnection::sessionBus().baseService(),
            u"/com/tolvane/brevok/Control"_s, u"com.tolvane.brevok.Control1"_s, method);
        message.setArguments(arguments);
        return caller.asyncCall(message);
    }
    [[nodiscard]] QDBusPendingCall check() const { return call(u"Check"_s); }
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
    void itWaitsForItsOwnAnswers()
    {
        const QList<std::tuple<const char *, bool, bool>> rows{
            {"plug-ins last", true, true},
            {"packages last", false, true},
            {"the last one fails", true, false},
        };
        for (const auto &[name, pluginsLast, well] : rows) {
            const InRow in(name);
            Application application;
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
        }
    }

    void withoutANetworkItEndsAtOnce()
    {
        Application application;
        application.rig.service.reachable = false;
        const QDBusPendingCall call = application.check();
        QTRY_VERIFY(call.isFinished());
        QCOMPARE(call.reply().arguments().value(0).toStringList().size(), 2);
    }

    void aSettingIsConfirmedWhenItIsStored()
    {
        Application application;
        const auto reply = [&](const QString &method, const QVariantList &arguments = {}) {
            const QDBusPendingCall call = application.call(method, arguments);
            return QTest::qWaitFor([&] { return call.isFinished(); }) ? call.reply() : QDBusMessage();
        };
        const auto warnings = [&] {
            const QString document = reply(u"Status"_s).arguments().value(0).toString();
            return QJsonDocument::fromJson(document.toUtf8())["warnings"_L1];
        };
        QVERIFY(warnings().isUndefined());
        application.store.setProblem(u"the disk is full"_s);
        const QDBusMessage refused = reply(u"SetSetting"_s, {u"autoUpdate"_s, u"yes"_s});
        QCOMPARE(refused.errorName(), u"com.tolvane.brevok.Error.Refused"_s);
        QVERIFY(refused.errorMessage().contains(u"the disk is full"_s));
        QVERIFY(application.store.boolValue(u"OrlecAutoUpdate"_s)); // it counts, and is tried again
        QVERIFY(warnings()[0].toString().contains(u"(the disk is full)"_s));
        application.store.setProblem({});
        QCOMPARE(reply(u"SetSetting"_s, {u"autoUpdate"_s, u"no"_s}).type(), QDBusMessage::ReplyMessage);
        QVERIFY(warnings().isUndefined());
        QVERIFY(!application.control.isBusy());
    }
};

QTEST_GUILESS_MAIN(ControlCheckTest)
#include "test_control_check.moc"
