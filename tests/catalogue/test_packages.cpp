// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"
#include "PackagesFixture.h"
#include "support/LogCapture.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Fixture = PackagesFixture;

class PackagesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { QVERIFY(finishBackgroundWork(10000)); }

    void elementsAreChecked_data();
    void elementsAreChecked();
    void recordsAreOrderedAndKept();
    void repliesAreHandled();
    void storedRubbishIsSurvived_data();
    void storedRubbishIsSurvived();
    void statusesFollowEveryChange();
    void callsDuringACalculationAreServedAfterIt();
    void usersCheckTellsOfNewUpdates_data();
    void usersCheckTellsOfNewUpdates();
    void announcedOnceIsNotNew();
    void veryLongListsAreTaken();
};

void PackagesTest::elementsAreChecked_data()
{
    QTest::addColumn<QJsonValue>("element");
    QTest::addColumn<bool>("taken");
    QTest::addColumn<QString>("line");
    const QString notDictionary = u"package is not nsdirectory!"_s;
    const QString incomplete = u"package data do not containe name!"_s;
    const Record good = Fixture::package(u"A"_s, u"P"_s);
    const auto mutated = [&](const char *key, const QJsonValue &value) {
        return QJsonValue(Fixture::with(good, QString::fromLatin1(key), value));
    };
    QTest::addRow("good") << QJsonValue(good) << true << QString();
    QTest::addRow("without prefix") << mutated("Prefix", QJsonValue(QJsonValue::Undefined)) << true
                                    << QString();
    QTest::addRow("number") << QJsonValue(1) << false << notDictionary;
    QTest::addRow("list") << QJsonValue(QJsonArray{good}) << false << notDictionary;
    QTest::addRow("other platform") << mutated("Platform", u"Win"_s) << false << QString();
    QTest::addRow("nameless, other platform")
        << QJsonValue(QJsonObject{{u"Platform"_s, u"Win"_s}}) << false << QString();
    QTest::addRow("no name") << mutated("Name", u""_s) << false << incomplete;
    QTest::addRow("number for name") << mutated("Name", 3) << false << incomplete;
    QTest::addRow("no publication") << mutated("Published", QJsonValue()) << false << incomplete;
    QTest::addRow("number for version") << mutated("Version", 1.5) << false << incomplete;
}

void PackagesTest::elementsAreChecked()
{
    QFETCH(QJsonValue, element);
    QFETCH(bool, taken);
    QFETCH(QString, line);
    Fixture f;
    BrevokPackages &packages = f.start();
    const LogCapture log;
    packages.updateWithArray({element});
    QCOMPARE(packages.packageRecords().size(), taken ? 1 : 0);
    QCOMPARE(packages.packagesIcons().size(), taken ? 1 : 0);
    QCOMPARE(LogCapture::lines(), line.isEmpty() ? QStringList() : QStringList(line));
}

void PackagesTest::recordsAreOrderedAndKept()
{
    Fixture f;
    f.start().updateWithArray({Fixture::package(u"gamma"_s, u"1"_s), Fixture::package(u"Beta"_s, u"2"_s),
        Fixture::package(u"alpha"_s, u"3"_s), Fixture::package(u"Beta"_s, u"4"_s)});
    QCOMPARE(f.names(), (QStringList{u"alpha"_s, u"Beta"_s, u"gamma"_s}));
    QCOMPARE(f.packages->packageRecords()[1].value(PackageKeys::prefix).toString(), u"4"_s);

    const Record extra = Fixture::with(Fixture::package(u"delta"_s, u"5"_s), u"Unknown"_s, QJsonArray{1});
    f.packages->updateWithArray({extra});
    QCOMPARE(f.start().packageRecords().size(), 4);
    QCOMPARE(f.packages->packageRecords()[2], extra);
    QCOMPARE(BrevokPackages::packages(), f.packages.get());
}

void PackagesTest::repliesAreHandled()
{
    Fixture f;
    f.settings.values.insert(
        CatalogueSettings::productsUpdateDate, QDateTime::currentDateTimeUtc().addDays(9).addSecs(60));
    BrevokPackages &packages = f.start();
    QCOMPARE(f.service.lists[0].path, u"/api/product/list"_s);
    const QSignalSpy finished(&packages, &BrevokPackages::checkFinished);
    const LogCapture log;
    f.service.answerList({.status = 0, .body = {}, .headers = {}, .error = BrevokError{}});
    QCOMPARE(packages.updateTimer()->interval(), 60000);
    QCOMPARE(f.presenter.shown.size(), 1);
    QCOMPARE(f.presenter.shown[0].messageText, u"Failed to update Products data"_s);
    QCOMPARE(
        f.presenter.shown[0].informativeText, u"Unable to contact the Tolvane Brevok server for 9 days."_s);
    QVERIFY(LogCapture::contains(u"Packages update failed with error"_s));

    packages.updateTimer()->start(0);
    QTRY_COMPARE(f.service.lists.size(), 1);
    f.service.answerList(Fixture::good({Fixture::package(u"A"_s, u"P"_s)}));
    QCOMPARE(packages.updateTimer()->interval(), 3600000);
    QVERIFY(f.settings.dateValue(CatalogueSettings::productsUpdateDate)
        < QDateTime::currentDateTimeUtc().addDays(1));

    packages.checkForUpdates();
    f.service.answerList({.status = 200, .body = "{}", .headers = {}, .error = {}});
    QVERIFY(LogCapture::contains(u"Packages definitions update failed!"_s));
    QVERIFY(packages.updateTimer()->isActive());
    packages.checkForUpdates();
    f.service.answerList({.status = 500, .body = {}, .headers = {}, .error = {}});
    QVERIFY(LogCapture::contains(u"Packages update failed with response: 500 - internal server error"_s));
    QVERIFY(!packages.updateTimer()->isActive());
    f.service.reachable = false;
    packages.checkForUpdates();
    QCOMPARE(finished.size(), 5);
    QVERIFY(finished[1][0].toBool() && !finished[4][0].toBool());
    QCOMPARE(packages.packageRecords().size(), 1);
}

void PackagesTest::storedRubbishIsSurvived_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("setAside");
    const Record good = Fixture::package(u"A"_s, u"P"_s);
    const QJsonObject odd{{u"A"_s, good}, {u"B"_s, 1}, {u"C"_s, QJsonObject()},
        {u"D"_s, QJsonObject{{u"Name"_s, 4}}}, {u"E"_s, QJsonArray{good}}};
    QTest::addRow("bytes") << QVariant(QByteArray("\x00\xffx", 3)) << true;
    QTest::addRow("list") << QVariant(archived(QJsonArray{good})) << true;
    QTest::addRow("text list") << QVariant(QStringList{u"a"_s}) << true;
    QTest::addRow("wrong shapes inside") << QVariant(archived(odd)) << false;
}

void PackagesTest::storedRubbishIsSurvived()
{
    QFETCH(QVariant, value);
    QFETCH(bool, setAside);
    Fixture f;
    for (const QLatin1StringView key : {CatalogueSettings::packagesData,
             CatalogueSettings::productsUpdateDate, CatalogueSettings::notifiedPackages}) {
        f.settings.values.insert(key, value);
    }
    const LogCapture log;
    BrevokPackages &packages = f.start();
    QCOMPARE(f.settings.keysSetAside.contains(CatalogueSettings::packagesData), setAside);
    QCOMPARE(packages.packageRecords().size(), setAside ? 0 : 1);
    QCOMPARE(LogCapture::contains(u"Stored packages: 4 unusable values left out."_s), !setAside);
    packages.notifyPackageStatuses();
    QVERIFY(f.settings.stringListValue(CatalogueSettings::notifiedPackages).isEmpty());
}

void PackagesTest::statusesFollowEveryChange()
{
    Fixture f;
    BrevokPackages &packages = f.start();
    const QSignalSpy settled(&packages, &BrevokPackages::statusesSettled);
    const auto status = [&] {
        return packages.packagesStatus().value(u"P"_s, PackageStatus::MissingData);
    };
    packages.updateWithArray({Fixture::package(u"A"_s, u"P"_s)});
    QVERIFY(packages.updating());
    QTRY_VERIFY(!settled.isEmpty());
    QCOMPARE(status(), PackageStatus::MissingData);
    f.plugins.updateWithArray({Fixture::build(u"A"_s, u"P"_s, u"2.0"_s, 140)});
    const QString target = f.target(u"A"_s, u"1.0"_s);
    QTRY_COMPARE(status(), PackageStatus::NotUpdated);
    writeInstalledPlugin(target, u"A"_s, u"2.0"_s, u"14.0"_s);
    f.plugins.updateWithArray({});
    QTRY_COMPARE(status(), PackageStatus::UpToDate);
    f.targets.setTarget(target, false);
    QTRY_COMPARE(status(), PackageStatus::MissingData);
    QVERIFY(packages.statusTimer()->isActive());
    QCOMPARE(packages.statusTimer()->interval(), 1000);
}

void PackagesTest::callsDuringACalculationAreServedAfterIt()
{
    Fixture f;
    f.archive(CatalogueSettings::packagesData, QJsonObject{{u"A"_s, Fixture::package(u"A"_s, u"P"_s)}});
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

void PackagesTest::usersCheckTellsOfNewUpdates_data()
{
    QTest::addColumn<int>("outdated");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("label");
    QTest::addRow("none") << 0 << u"You're up-to-date!"_s << u"There are no new Plug-In updates available."_s;
    QTest::addRow("one") << 1 << u"Plug-In update available!"_s << u"p0 Plug-In update is available."_s;
    QTest::addRow("three") << 3 << u"Plug-In updates available!"_s
                           << u"You have 3 Plug-In updates available."_s;
}

void PackagesTest::usersCheckTellsOfNewUpdates()
{
    QFETCH(int, outdated);
    QFETCH(QString, title);
    QFETCH(QString, label);
    Fixture f;
    BrevokPackages &packages = f.start();
    QJsonArray list{Fixture::package(u"current"_s, u"C"_s)};
    QJsonArray builds{Fixture::build(u"C"_s, u"C"_s, u"1.0"_s, 140)};
    f.target(u"C"_s, u"1.0"_s);
    for (int i = 0; i < outdated; ++i) {
        const QString name = u"p%1"_s.arg(i);
        list.append(Fixture::package(name, name));
        builds.append(Fixture::build(name, name, u"2.0"_s, 140));
        f.target(name, u"1.0"_s);
    }
    f.plugins.updateWithArray(builds);
    const QSignalSpy progress(&packages, &BrevokPackages::updateProgressWanted);
    const QSignalSpy result(&packages, &BrevokPackages::updateResult);
    const QSignalSpy count(&packages, &BrevokPackages::updatesChanged);
    packages.checkForUpdates(false);
    QCOMPARE(progress.size(), 1);
    f.service.lists.swapItemsAt(0, f.service.lists.size() - 1);
    f.service.answerList(Fixture::good(list));
    QTRY_COMPARE(result.size(), 1); // by way of the lazy notification
    QCOMPARE(result[0][0].toString(), title);
    QCOMPARE(result[0][1].toString(), label);
    QCOMPARE(count.last()[0].toInt(), outdated);
    QCOMPARE(packages.updates(), outdated);
    QCOMPARE(f.settings.stringListValue(CatalogueSettings::notifiedPackages).size(), outdated);
    packages.notifyPackageStatuses();
    QCOMPARE(result.size(), 1);
}

void PackagesTest::announcedOnceIsNotNew()
{
    Fixture f;
    BrevokPackages &packages = f.start();
    f.plugins.updateWithArray({Fixture::build(u"A"_s, u"P"_s, u"2.0"_s, 140)});
    f.target(u"A"_s, u"1.0"_s);
    packages.updateWithArray({Fixture::package(u"A"_s, u"P"_s)});
    QTRY_COMPARE(packages.packagesStatus().value(u"P"_s), PackageStatus::NotUpdated);
    const QSignalSpy result(&packages, &BrevokPackages::updateResult);
    for (const QString &title : {u"Plug-In update available!"_s, u"You're up-to-date!"_s}) {
        packages.checkForUpdates(false);
        packages.notifyPackageStatuses();
        QCOMPARE(result.last()[0].toString(), title);
        QCOMPARE(packages.updates(), 1);
    }
    // An automatic check in between takes the result window back.
    packages.checkForUpdates(false);
    packages.checkForUpdates();
    packages.notifyPackageStatuses();
    QCOMPARE(result.size(), 2);
}

void PackagesTest::veryLongListsAreTaken()
{
    Fixture f;
    BrevokPackages &packages = f.start();
    QJsonArray list;
    for (int i = 0; i < 100000; ++i) {
        list.append(i % 10 == 0 ? QJsonValue(u"x"_s)
                                : QJsonValue(Fixture::package(QString::number(i), QString::number(i / 3))));
    }
    const LogCapture log;
    f.service.lists.clear();
    packages.checkForUpdates();
    f.service.answerList(Fixture::good(list));
    QCOMPARE(packages.packageRecords().size(), 90000);
    QCOMPARE(LogCapture::count(u"package is not nsdirectory!"_s), 10000);
    QTRY_VERIFY(!packages.updating());
}

QTEST_GUILESS_MAIN(PackagesTest)
#include "test_packages.moc"
