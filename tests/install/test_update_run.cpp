// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "FlowRig.h"
#include "install/UpdateRun.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

/// So many packages of one build each, all installed in an older version.
struct UpdateRig : InstallRig {
    explicit UpdateRig(int count)
    {
        const QString target = addTarget(u"InDesign 2019"_s, u"140"_s);
        QJsonArray builds;
        QJsonArray list;
        for (int i = 0; i < count; ++i) {
            const QString name = u"P%1"_s.arg(i);
            builds.append(build(name, name, 140));
            list.append(QJsonObject{{PackageKeys::name, name}, {PackageKeys::prefix, name},
                {PackageKeys::version, u"2.0"_s}, {PackageKeys::published, u"now"_s},
                {PackageKeys::platform, u"Mac"_s}});
            writeInstalledPlugin(target, name, u"1.0"_s, u"14.0"_s);
        }
        plugins.updateWithArray(builds);
        packages.updateWithArray(list);
        waits = QTest::qWaitFor(
            [&] { return !packages.updating() && packages.waitingPackages().size() == count; });
    }
    bool waits = false;
    UpdateRun run{flow, packages};
};

} // namespace

using FailuresAreToldInOneAlert = Table<int, QString>;

class UpdateRunTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void failuresAreToldInOneAlert_data()
    {
        const FailuresAreToldInOneAlert row;
        row("none", 0, QString());
        row("one", 1, "Error: Failed to download P0, from https://host/P0-140.zip");
        row("five", 5, "Multiple errors have occured. Please contact Tolvane support.");
    }

    void failuresAreToldInOneAlert()
    {
        const auto [failing, text] = FailuresAreToldInOneAlert::current();
        UpdateRig rig(5);
        QVERIFY(rig.waits);
        Ended ended;
        rig.run.start(ended.here());
        for (int i = 0; i < 5; ++i) {
            QVERIFY(answerNext(rig, i < failing ? "too short" : InstallRig::archiveOf(u"P%1"_s.arg(i), 140)));
        }
        QTRY_COMPARE(ended.times, 1);
        QTRY_VERIFY(!rig.flow.isBusy());
        QCoreApplication::processEvents();
        QCOMPARE(ended.outcome.failures().size(), failing);
        QCOMPARE(rig.presenter.shown.size(), std::min(failing, 1));
        if (failing > 0) {
            QCOMPARE(rig.presenter.shown[0].messageText, u"Failed to install 'P0.InDesignPlugin'!"_s);
            QCOMPARE(rig.presenter.shown[0].informativeText.value_or(QString()), text);
        }
        for (int i = 0; i < failing; ++i) {
            const QString line = u"Error: Failed to download P%1, from https://host/P%1-140.zip"_s.arg(i);
            QCOMPARE(LogCapture::count(line), 1);
        }
    }

    void stoppingTellsWhatFailed()
    {
        UpdateRig rig(4);
        QVERIFY(rig.waits);
        Ended first;
        Ended second;
        rig.run.start(first.here());
        QVERIFY(answerNext(rig, "too short"));
        QTRY_COMPARE(rig.run.current(), 2);
        rig.run.stop();
        rig.run.start(second.here()); // whoever asks now wants all of them
        QVERIFY(!rig.run.isStopping());
        QVERIFY(answerNext(rig, InstallRig::archiveOf(u"P1"_s, 140)));
        QTRY_COMPARE(rig.run.current(), 3);
        QCOMPARE(first.times + second.times, 0);
        rig.run.stop();
        QVERIFY(answerNext(rig, InstallRig::archiveOf(u"P2"_s, 140)));
        for (const Ended *ended : {&first, &second}) {
            QTRY_COMPARE(ended->times, 1);
            QCOMPARE(ended->outcome.planned, 3);
        }
        QCOMPARE(rig.presenter.shown.size(), 1);
        QVERIFY(!rig.flow.isBusy() && !rig.run.isRunning());
    }
};

QTEST_GUILESS_MAIN(UpdateRunTest)
#include "test_update_run.moc"
