// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "PackagesFixture.h"
#include "support/FailingDisk.h"
#include "support/LogCapture.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Fixture = PackagesFixture;

using ElementsAreChecked = Table<QJsonValue, bool, QString>;
using FailedOwnCheckHasNoResult = Table<ServiceReply, ServiceReply, QString>;

class PackagesTest : public QObject {
    Q_OBJECT

public:
    FailingDisk disk;

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { QVERIFY(finishBackgroundWork(10000)); }

    void elementsAreChecked_data()
    {
        const ElementsAreChecked row;
        const QString notDictionary = u"package is not nsdirectory!"_s;
        const QString incomplete = u"package data do not containe name!"_s;
        const Record good = package(u"A"_s);
        const auto mutated = [&](const char *key, const QJsonValue &value) {
            return QJsonValue(with(good, QString::fromLatin1(key), value));
        };
        row("good", QJsonValue(good), true, QString());
        row("without prefix", mutated("Prefix", QJsonValue(QJsonValue::Undefined)), true, QString());
        row("number", QJsonValue(1), false, notDictionary);
        row("other platform", mutated("Platform", u"Win"_s), false, QString());
        row("nameless, other platform", QJsonValue(QJsonObject{{u"Platform"_s, u"Win"_s}}), false, QString());
        row("no name", mutated("Name", u""_s), false, incomplete);
        row("no publication", mutated("Published", QJsonValue()), false, incomplete);
        row("number for version", mutated("Version", 1.5), false, incomplete);
    }

    void elementsAreChecked()
    {
        const auto [element, taken, line] = ElementsAreChecked::current();
        Fixture f;
        BrevokPackages &packages = f.start();
        const LogCapture log;
        packages.updateWithArray({element});
        QCOMPARE(packages.packageRecords().size(), taken ? 1 : 0);
        QCOMPARE(packages.packagesIcons().size(), taken ? 1 : 0);
        QCOMPARE(LogCapture::lines(), line.isEmpty() ? QStringList() : QStringList(line));
    }

    void recordsAreOrderedAndKept()
    {
        Fixture f;
        f.start().updateWithArray({package(u"gamma"_s, u"1"_s), package(u"Beta"_s, u"2"_s),
            package(u"alpha"_s, u"3"_s), package(u"Beta"_s, u"4"_s)});
        QCOMPARE(f.names(), (QStringList{u"alpha"_s, u"Beta"_s, u"gamma"_s}));
        QCOMPARE(f.packages->packageRecords()[1].value(PackageKeys::prefix).toString(), u"4"_s);

        const Record extra = with(package(u"delta"_s, u"5"_s), u"Unknown"_s, QJsonArray{1});
        f.packages->updateWithArray({extra});
        QCOMPARE(f.start().packageRecords().size(), 4);
        QCOMPARE(f.packages->packageRecords()[2], extra);
        QCOMPARE(BrevokPackages::packages(), f.packages.get());
    }

    // How replies are handled is the same as for plug-ins.
    void repliesHaveTheirOwnWords()
    {
        Fixture f;
        f.state.setDate(
            CatalogueKeys::productsUpdateDate, QDateTime::currentDateTimeUtc().addDays(9).addSecs(60));
        BrevokPackages &packages = f.start();
        QCOMPARE(f.service.lists[0].path, u"/api/product/list"_s);
        const LogCapture log;
        f.service.answerList({.status = 0, .error = BrevokError{}});
        QCOMPARE(f.presenter.shown.size(), 1);
        QCOMPARE(f.presenter.shown[0].messageText, u"Failed to update Products data"_s);
        QCOMPARE(f.presenter.shown[0].informativeText,
            u"Unable to contact the Tolvane Brevok server for 9 days."_s);
        QVERIFY(LogCapture::contains(u"Packages update failed with error"_s));
        packages.checkForUpdates();
        f.service.answerList({.status = 200, .body = "{}"});
        QVERIFY(LogCapture::contains(u"Packages definitions update failed!"_s));
        packages.checkForUpdates();
        f.service.answerList({.status = 500});
        QVERIFY(LogCapture::contains(u"Packages update failed with response: 500 - internal server error"_s));
    }

    void storedRubbishIsSurvived()
    {
        Fixture f;
        f.storePackages(
            {{u"A"_s, package(u"A"_s)}, {u"C"_s, QJsonObject()}, {u"D"_s, QJsonObject{{u"Name"_s, 4}}}});
        f.state.commit({{CatalogueKeys::productsUpdateDate, QString(), Record{{u"Value"_s, u"soon"_s}}},
            {CatalogueKeys::notifiedPackages, u"gone"_s, Record()}});
        const LogCapture log;
        BrevokPackages &packages = f.start();
        QCOMPARE(packages.packageRecords().size(), 1);
        QVERIFY(LogCapture::contains(u"Stored packages: 2 unusable values left out."_s));
        packages.notifyPackageStatuses();
        QVERIFY(f.state.entries(CatalogueKeys::notifiedPackages).isEmpty());
    }

    void namesStayOneAcrossARestart()
    {
        Fixture f;
        f.start();
        const QString marked = QChar(0xfeff) + u"Marked"_s;
        const QByteArray list =
            R"([{"Name":"\ufeffMarked","Prefix":"M","Version":"1","Published":"1","Platform":"Mac"},)"
            R"({"Name":"Half \ud83d","Prefix":"H\uDC00","Version":"1","Published":"1","Platform":"Mac"}])";
        for (int start = 0; start < 3; ++start) {
            f.service.answerList({.status = 200, .body = list});
            QCOMPARE(f.names(), (QStringList{u"Half \uFFFD"_s, marked}));
            QVERIFY(f.flushed());
            f.start();
            QCOMPARE(f.names(), (QStringList{u"Half \uFFFD"_s, marked}));
            QCOMPARE(f.packages->packageRecords()[0].value(PackageKeys::prefix).toString(), u"H\uFFFD"_s);
        }
    }

    void aListThatBringsNothingNewWritesNothing()
    {
        Fixture f;
        BrevokPackages &packages = f.start();
        const QJsonArray list{package(u"A"_s, u"P"_s, u"https://x/a.png"_s), package(u"B"_s)};
        packages.updateWithArray(list);
        f.answerFile(200, "GIF89a...");
        QTRY_VERIFY(!f.iconPath(u"A"_s).isEmpty());
        const QString path = f.iconPath(u"A"_s);
        QVERIFY(f.flushed());
        FailingDisk::heal();
        // The icon is dropped and comes again: the record ends as it was.
        packages.updateWithArray(list);
        f.answerFile(200, "GIF89a...");
        QTRY_COMPARE(packages.packageRecords()[0].value(PackageKeys::iconPath).toString(), path);
        QCOMPARE(f.iconPath(u"A"_s), path);
        QVERIFY(f.flushed());
        QCOMPARE(FailingDisk::bytes(), 0);
        packages.updateWithArray(list);
        f.answerFile(500, {});
        QTRY_COMPARE(f.iconPath(u"A"_s), QString());
    }

    void aChangeOfOnePluginIsCalculatedAlone()
    {
        Fixture f;
        BrevokPackages &packages = f.start();
        const QString target = f.target(u"A"_s, u"1.0"_s);
        f.target(u"C"_s, u"1.0"_s);
        packages.updateWithArray(
            {package(u"a"_s), package(u"b"_s, u"Q"_s), package(u"c"_s, u"R"_s), package(u"d"_s, u"R"_s)});
        f.plugins.updateWithArray({build(u"A"_s, u"P"_s, u"1.0"_s), build(u"A"_s, u"Q"_s, u"2.0"_s),
            build(u"C"_s, u"R"_s, u"2.0"_s), build(u"A"_s, u"unpublished"_s, u"2.0"_s)});
        const auto statuses = [&] {
            const auto &all = packages.packagesStatus();
            return QList{all.value(u"P"_s), all.value(u"Q"_s), all.value(u"R"_s)};
        };
        using enum PackageStatus;
        QTRY_COMPARE(statuses(), (QList{UpToDate, NotUpdated, NotUpdated}));
        QTRY_VERIFY(!packages.updating() && !packages.needUpdate() && !packages.statusTimer()->isActive());
        QCOMPARE(packages.updates(), 3);

        // Another program updates both bundles; then one of them is told of.
        writeInstalledPlugin(target, u"A"_s, u"2.0"_s, u"14.0"_s);
        writeInstalledPlugin(target, u"C"_s, u"2.0"_s, u"14.0"_s);
        setLogLevel(1);
        LogCapture log;
        f.plugins.announceChange({u"140:A_1.0"_s});
        QTRY_VERIFY(!packages.updating());
        setLogLevel(0);
        QCOMPARE(statuses(), (QList{UpToDate, UpToDate, NotUpdated}));
        QCOMPARE(packages.packagesStatus().size(), 3);
        QCOMPARE(LogCapture::count(u"App version: 140"_s), 2); // whatever the catalogue's size
        packages.notifyPackageStatuses();
        QCOMPARE(packages.updates(), 2);
        // When it is quiet, the rest is looked at too.
        QTRY_COMPARE(statuses(), (QList{UpToDate, UpToDate, UpToDate}));
        QTRY_COMPARE(packages.updates(), 0);
        QVERIFY(f.state.entries(CatalogueKeys::notifiedPackages).isEmpty());
        f.targets.setTarget(target, false);
        QTRY_COMPARE(statuses(), (QList{MissingData, MissingData, MissingData}));
    }

    void callsDuringACalculationAreServedAfterIt()
    {
        Fixture f;
        f.storePackages({{u"A"_s, package(u"A"_s)}});
        BrevokPackages &packages = f.start();
        QVERIFY(!packages.updating());
        const QSignalSpy changed(&packages, &BrevokPackages::packagesStatusChanged);
        const QSignalSpy settled(&packages, &BrevokPackages::statusesSettled);
        for (int i = 0; i < 10; ++i) {
            packages.calculatePackageStatuses();
            QVERIFY(packages.updating());
        }
        QVERIFY(packages.needUpdate());
        QTRY_COMPARE(settled.size(), 1);
        QVERIFY(!packages.updating() && !packages.needUpdate());
        QVERIFY(changed.size() <= 4);
        packages.calculatePackageStatuses();
        f.packages.reset(); // while it runs
    }

    void usersCheckTellsOfNewUpdates()
    {
        Fixture f;
        BrevokPackages &packages = f.start();
        f.service.lists.clear();
        const QSignalSpy progress(&packages, &BrevokPackages::updateProgressWanted);
        const QSignalSpy result(&packages, &BrevokPackages::updateResult);
        QJsonArray builds{build(u"C"_s, u"C"_s, u"1.0"_s)};
        QJsonArray list{package(u"current"_s, u"C"_s)};
        f.target(u"C"_s, u"1.0"_s);
        const auto publish = [&](const QString &name) {
            list.append(package(name, name));
            builds.append(build(name, name, u"2.0"_s));
            f.target(name, u"1.0"_s);
        };
        const auto check = [&](int updates, const QString &title, const QString &label) {
            const qsizetype before = result.size();
            packages.checkForUpdates(false);
            packages.notifyPackageStatuses(); // is too early: nobody has answered
            f.service.answerList(good(builds));
            f.service.answerList(good(list));
            QTRY_COMPARE(result.size(), before + 1); // by way of the lazy notification
            QCOMPARE(result.last()[0].toString(), title);
            QCOMPARE(result.last()[1].toString(), label);
            QCOMPARE(progress.size(), result.size());
            QCOMPARE(packages.updates(), updates);
            QCOMPARE(f.state.entries(CatalogueKeys::notifiedPackages).size(), updates);
        };
        const QString none = u"There are no new Plug-In updates available."_s;
        check(0, u"You're up-to-date!"_s, none);
        publish(u"p0"_s);
        check(1, u"Plug-In update available!"_s, u"p0 Plug-In update is available."_s);
        check(1, u"You're up-to-date!"_s, none); // announced once, it is not new
        publish(u"p1"_s);
        publish(u"p2"_s);
        packages.forgetNotified(u"p0"_s);
        check(3, u"Plug-In updates available!"_s, u"You have 3 Plug-In updates available."_s);
    }

    void ownCheckIsNotDoneBeforeItsLists()
    {
        Fixture f;
        BrevokPackages &packages = f.start();
        f.target(u"A"_s, u"1.0"_s);
        f.service.lists.clear();
        const QSignalSpy result(&packages, &BrevokPackages::updateResult);
        const QSignalSpy failed(&packages, &BrevokPackages::ownCheckFailed);
        const QSignalSpy settled(&packages, &BrevokPackages::statusesSettled);
        packages.checkForUpdates(false);
        f.service.answerList({.status = 500});
        packages.checkForUpdates(false); // takes the place of the first one, whose end tells nothing
        f.service.answerList(good({package(u"A"_s)}));
        f.service.answerList(good({build(u"A"_s, u"P"_s, u"2.0"_s)}));
        QTRY_VERIFY(!settled.isEmpty() && !packages.updating() && !packages.needUpdate());
        packages.notifyPackageStatuses();
        QCOMPARE(packages.updates(), 1);
        QVERIFY(result.isEmpty());
        packages.checkForUpdates(); // nor does an automatic check end it
        f.service.lists.swapItemsAt(0, 1);
        f.service.answerList({.status = 500});
        f.service.answerList(good({package(u"A"_s)}));
        QTRY_COMPARE(result.size(), 1);
        // What became known while the check was under way is new.
        QCOMPARE(result[0][0].toString(), u"Plug-In update available!"_s);
        QVERIFY(failed.isEmpty());
    }

    // The replies to the two requests, and the cause that is told.
    void failedOwnCheckHasNoResult_data()
    {
        const FailedOwnCheckHasNoResult row;
        const ServiceReply builds = good({build(u"p"_s, u"p"_s, u"2.0"_s)});
        const ServiceReply list = good({package(u"p"_s, u"p"_s)});
        row("no list", {.status = 200, .body = "<html></html>"}, list, "Unexpected server response.");
        row("status", builds, {.status = 503}, "Server responded with HTTP code: 503.");
        row("transport", builds, {.error = BrevokError{.description = u"it broke"_s}}, "it broke");
        row("no network", {}, {}, "Network is unreachable. Is your internet connection down?");
    }

    void failedOwnCheckHasNoResult()
    {
        const auto [builds, list, cause] = FailedOwnCheckHasNoResult::current();
        Fixture f;
        BrevokPackages &packages = f.start();
        f.target(u"p"_s, u"1.0"_s);
        f.service.answerList(good({package(u"p"_s, u"p"_s)})); // at the start, with no build for it
        const QSignalSpy result(&packages, &BrevokPackages::updateResult);
        const QSignalSpy failed(&packages, &BrevokPackages::ownCheckFailed);
        f.service.reachable = builds.status != 0;
        packages.checkForUpdates(false);
        if (f.service.reachable) {
            f.service.answerList(builds);
            f.service.answerList(list);
        }
        QTRY_COMPARE(failed.size(), 1);
        QCOMPARE(failed[0][0].toString(), cause);
        QTRY_VERIFY(!packages.updating());
        packages.notifyPackageStatuses();
        QVERIFY(result.isEmpty());
        QTRY_COMPARE(packages.updates(), list.status == 200 || !f.service.reachable ? 0 : 1);

        // What it found is told with the next one.
        f.service.reachable = true;
        packages.checkForUpdates(false);
        f.service.answerList(good({build(u"p"_s, u"p"_s, u"2.0"_s)}));
        f.service.answerList(good({package(u"p"_s, u"p"_s)}));
        QTRY_COMPARE(result.size(), 1);
        QCOMPARE(result[0][0].toString(), u"Plug-In update available!"_s);
    }
};

QTEST_GUILESS_MAIN(PackagesTest)
#include "test_packages.moc"
