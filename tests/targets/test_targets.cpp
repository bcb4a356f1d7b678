// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"
#include "TargetHouse.h"
#include "targets/MarketingNames.h"

#include <QRegularExpression>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::House;
using Notification = ApplicationSearch::Notification;

namespace {

const QString gatheredKey = TargetSettings::gathered;

Record target(const QJsonValue &type, const QJsonValue &version)
{
    return {{u"Type"_s, type}, {u"Version"_s, version}};
}

} // namespace

class TargetsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanupTestCase() { QVERIFY(finishBackgroundWork(10000)); }

    void versionsHaveShortNames_data();
    void versionsHaveShortNames();
    void targetsHaveLabels_data();
    void targetsHaveLabels();
    void foundApplicationsBecomeTargets_data();
    void foundApplicationsBecomeTargets();
    void otherBundlesAreSkipped_data();
    void otherBundlesAreSkipped();
    void linkedApplicationsCountWhereTheyAre();
    void recordsFollowTheirApplications();
    void knownRecordsAreReplacedOnlyForAnotherVersion_data();
    void knownRecordsAreReplacedOnlyForAnotherVersion();
    void usersChangesAreBracketedAndSaved();
    void firstGatheringAsksForReview_data();
    void firstGatheringAsksForReview();
    void storedListIsReadWithCare();
    void searchIsStartedAndStopped();
};

void TargetsTest::versionsHaveShortNames_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *version, const char *name) {
        QTest::addRow("%s", version) << QString::fromLatin1(version) << QString::fromLatin1(name);
    };
    row("", "-");
    row("CS6", "-");
    row("29", "-");
    row("30", "CS");
    row("39", "CS");
    row("40", "CS2");
    row("59", "CS3");
    row("69", "CS4");
    row("74", "CS5");
    row("75", "CS5.5");
    row("80", "CS6");
    row("89", "CS6");
    row("90", "CC");
    row("7536", "CC");
    row("-5", "-");
}

void TargetsTest::versionsHaveShortNames()
{
    QFETCH(QString, version);
    QTEST(getVersionString(version), "name");
}

void TargetsTest::targetsHaveLabels_data()
{
    QTest::addColumn<Record>("record");
    QTest::addColumn<QString>("label");
    const auto row = [](const char *type, const char *version, const char *label) {
        QTest::addRow("%s %s", type, version)
            << target(QString::fromLatin1(type), QString::fromLatin1(version)) << QString::fromLatin1(label);
    };
    row("Adobe InDesign", "75", "Adobe InDesign CS5.5");
    row("InDesign", "30", "InDesign CS");
    row("InDesign CS", "49", "InDesign CS2");
    row("InDesign CS", "50", "InDesign CS3");
    row("InCopy CC", "80", "InCopy CC CS6");
    row("InCopy", "60", "InCopy CS4");
    row("", "74", "InDesign CS5");
    row("InCopy CC", "99", "InCopy CC");
    row("InDesign CS", "90", "InDesign CS CC");
    row("InDesign", "109", "InDesign CC 2014");
    row("InDesign", "110", "InDesign CC 2015");
    row("InDesign", "120", "InDesign CC 2017");
    row("InDesign", "139", "InDesign CC 2018");
    row("Adobe InDesign CC", "140", "Adobe InDesign CC 2019");
    row("InDesign", "150", "InDesign CC 2020");
    row("InDesign", "160", "InDesign CC 2021");
    row("InDesign", "170", "InDesign CC 2022");
    row("InDesign", "180", "InDesign CC 2023");
    row("InDesign", "199", "InDesign CC 2024");
    row("InDesign", "200", "InDesign CC [200]");
    row("InDesign", "29", "InDesign CC [29]");
    row("InDesign", "", "InDesign CC [0]");
    QTest::addRow("not texts") << target(5, 140) << u"InDesign CC [0]"_s;
    QTest::addRow("nothing") << Record() << u"InDesign CC [0]"_s;
}

void TargetsTest::targetsHaveLabels()
{
    QFETCH(Record, record);
    QFETCH(QString, label);
    QCOMPARE(targetLabel(record), label);
    QCOMPARE(targetCellLabel(u"/a/Plug-Ins/"_s, record), u"/a/Plug-Ins/ ["_s + label + u']');
}

void TargetsTest::foundApplicationsBecomeTargets_data()
{
    QTest::addColumn<QString>("bundleVersion");
    QTest::addColumn<QString>("version");
    QTest::addRow("14.0") << u"14012"_s << u"140"_s;
    QTest::addRow("7.5") << u"7536"_s << u"75"_s;
    QTest::addRow("dotted") << u"15.0.2"_s << u"0"_s;
    QTest::addRow("toward zero") << u"-150"_s << u"-1"_s;
    QTest::addRow("no number") << u"beta"_s << u"0"_s;
}

void TargetsTest::foundApplicationsBecomeTargets()
{
    QFETCH(QString, bundleVersion);
    QFETCH(QString, version);
    House house;
    BrevokTargetApps targets(house.state, house.search);
    const QString path = house.install(u"Adobe InDesign 2019"_s, bundleVersion);
    house.notify(Notification::GatheringProgress);
    const Record record{{u"Path"_s, path}, {u"Type"_s, u"Adobe InDesign"_s}, {u"Version"_s, version},
        {u"Enabled"_s, u"yes"_s}, {u"Removed"_s, u"no"_s}, {u"Invalid"_s, u"no"_s}};
    QCOMPARE(targets.validTargets(), (TargetRecords{{path, record}}));
    QCOMPARE(house.stored().value(path), record);
    QVERIFY(path.endsWith(u"/Adobe InDesign 2019/Plug-Ins/"_s));
}

void TargetsTest::otherBundlesAreSkipped_data()
{
    QTest::addColumn<QByteArray>("information");
    QTest::addColumn<qsizetype>("count");
    const auto row = [](const char *name, const QMap<QString, QString> &changes, qsizetype count) {
        QMap<QString, QString> information{{u"CFBundlePackageType"_s, u"APPL"_s},
            {u"CFBundleSignature"_s, u"InCp"_s}, {u"CFBundleVersion"_s, u"14012"_s}};
        information.insert(changes);
        QTest::addRow("%s", name) << testing::propertyList(information) << count;
    };
    row("without a name", {}, 1);
    row("not an application", {{u"CFBundlePackageType"_s, u"BNDL"_s}}, 0);
    row("another signature", {{u"CFBundleSignature"_s, u"indn"_s}}, 0);
    row("empty version", {{u"CFBundleVersion"_s, u""_s}}, 0);
    QByteArray number =
        testing::propertyList({{u"CFBundlePackageType"_s, u"APPL"_s}, {u"CFBundleSignature"_s, u"InDn"_s}});
    number.replace("</dict>", "<key>CFBundleVersion</key><integer>14012</integer></dict>");
    QTest::addRow("version not a text") << number << qsizetype(0);
    QTest::addRow("broken") << QByteArray("<plist><dict><key>CFBundleVersion</key>") << qsizetype(0);
    QTest::addRow("empty") << QByteArray() << qsizetype(0);
    QTest::addRow("torn binary") << QByteArray("bplist00\xd1\x01\x02\xff\xff\xff", 14) << qsizetype(0);
    // {CFBundleVersion: "14012", CFBundleSignature: "InDn", CFBundlePackageType: "APPL"}
    QTest::addRow("binary") << QByteArray::fromBase64(
        "YnBsaXN0MDDTAQIDBAUGXxAPQ0ZCdW5kbGVWZXJzaW9uXxARQ0ZCdW5kbGVTaWduYXR1cmVfEBNDRkJ1"
        "bmRsZVBhY2thZ2VUeXBlVTE0MDEyVEluRG5UQVBQTAgPITVLUVYAAAAAAAABAQAAAAAAAAAHAAAAAAAA"
        "AAAAAAAAAAAAWw==") << qsizetype(1);
}

void TargetsTest::otherBundlesAreSkipped()
{
    QFETCH(QByteArray, information);
    House house;
    BrevokTargetApps targets(house.state, house.search);
    house.install(u"InDesign 2019"_s, u"14012"_s);
    QVERIFY(testing::writeFile(house.search.found.first() + u"/Contents/Info.plist"_s, information));
    house.search.found.append(house.applications + u"/gone/InDesign 2020.app"_s);
    house.notify();
    QTEST(targets.allRecords().size(), "count");
}

void TargetsTest::linkedApplicationsCountWhereTheyAre()
{
    House house;
    BrevokTargetApps targets(house.state, house.search);
    const QString path = house.install(u"InDesign CC"_s, u"9000"_s);
    const QString link = house.applications + u"/InDesign CC.app"_s;
    QVERIFY(QFile::link(house.search.found.first(), link));
    house.search.found.append(link);
    house.notify();
    QCOMPARE(targets.allRecords().keys(), QStringList{path});
}

void TargetsTest::recordsFollowTheirApplications()
{
    House house;
    BrevokTargetApps targets(house.state, house.search);
    const QString path = house.install(u"InDesign 2019"_s, u"14012"_s);
    house.notify();
    targets.setTarget(path, false);
    targets.removeTarget(path);
    const StateEntries written = house.stored();

    // A folder that goes hides the target, though the stored record stays as it was.
    QVERIFY(QDir(path).removeRecursively());
    House::await([&] { targets.getInstallTargets(std::nullopt); });
    QCOMPARE(targets.allRecords().value(path).value(u"Invalid"_s), u"yes"_s);
    QCOMPARE(house.stored().value(path).value(u"Invalid"_s), u"no"_s);

    // The same version revalidates it, even while the folder is missing, and leaves the user's choices.
    house.notify();
    QCOMPARE(targets.allRecords().value(path).value(u"Invalid"_s), u"no"_s);
    QCOMPARE(targets.allRecords().value(path).value(u"Removed"_s), u"yes"_s);
    QVERIFY(!targets.targetState(path));

    // Another version needs the folder before it makes a new record.
    const QString plist = house.search.found.first() + u"/Contents/Info.plist"_s;
    house.install(u"InDesign 2019"_s, u"14012"_s);
    const QByteArray newer = testing::propertyList({{u"CFBundlePackageType"_s, u"APPL"_s},
        {u"CFBundleSignature"_s, u"InDn"_s}, {u"CFBundleVersion"_s, u"15020"_s}});
    QVERIFY(testing::writeFile(plist, newer) && QDir(path).removeRecursively());
    house.notify();
    QCOMPARE(targets.allRecords().value(path).value(u"Version"_s), u"140"_s);
    QCOMPARE(house.stored(), written);
    QVERIFY(targets.targets().isEmpty());

    QVERIFY(QDir().mkpath(path));
    house.notify();
    QCOMPARE(targets.validTargets().value(path).value(u"Version"_s), u"150"_s);

    // An application that went leaves an invalid record.
    house.search.found.clear();
    QVERIFY(QDir(house.applications + u"/InDesign 2019"_s).removeRecursively());
    house.notify();
    QVERIFY(targets.targets().isEmpty());
    QCOMPARE(targets.allRecords().size(), 1);
}

void TargetsTest::knownRecordsAreReplacedOnlyForAnotherVersion_data()
{
    QTest::addColumn<QJsonValue>("version");
    QTest::addColumn<bool>("replaced");
    QTest::addRow("same") << QJsonValue(u"140"_s) << false;
    QTest::addRow("other") << QJsonValue(u"140.0"_s) << true;
    QTest::addRow("empty") << QJsonValue(u""_s) << true;
    QTest::addRow("number") << QJsonValue(140) << true;
    QTest::addRow("missing") << QJsonValue(QJsonValue::Undefined) << false;
}

void TargetsTest::knownRecordsAreReplacedOnlyForAnotherVersion()
{
    QFETCH(QJsonValue, version);
    QFETCH(bool, replaced);
    House house;
    const QString path = house.install(u"InDesign 2019"_s, u"14012"_s);
    Record record{{u"Path"_s, path}, {u"Enabled"_s, u"no"_s}, {u"Mine"_s, u"kept"_s}};
    record.insert(u"Version"_s, version); // an undefined value inserts nothing
    house.store(path, record);
    BrevokTargetApps targets(house.state, house.search);
    house.notify();
    QCOMPARE(targets.targetState(path), replaced);
    QCOMPARE(targets.allRecords().value(path) == record, !replaced);
}

void TargetsTest::usersChangesAreBracketedAndSaved()
{
    House house;
    BrevokTargetApps targets(house.state, house.search);
    QStringList signs;
    connect(&targets, &BrevokTargetApps::targetsWillChange, this, [&] { signs += u"will"_s; });
    connect(&targets, &BrevokTargetApps::targetsChanged, this, [&] { signs += u"did"_s; });
    const QStringList once{u"will"_s, u"did"_s};
    const auto changes = [&] {
        return std::exchange(signs, {});
    };

    const QString path = house.applications; // a path of the user's keeps its form
    targets.insertTarget(path, u"InCopy"_s, u"80"_s);
    QCOMPARE(changes(), once);
    QVERIFY(targets.targetState(path));
    targets.setTarget(path, false);
    QCOMPARE(changes(), once);
    QVERIFY(targets.targets().contains(path) && targets.validTargets().isEmpty());
    House::await([&] { targets.getInstallTargets(std::nullopt); });
    QCOMPARE(changes(), QStringList());
    targets.removeTarget(path);
    QCOMPARE(changes(), once);
    QVERIFY(targets.targets().isEmpty());
    QCOMPARE(house.stored().keys(), QStringList{path});

    // An unknown path changes nothing and is announced all the same.
    targets.setTarget(u"/nowhere"_s, true);
    targets.removeTarget(u"/nowhere"_s);
    QCOMPARE(changes(), once + once);
    QVERIFY(!targets.targetState(u"/nowhere"_s));
    QCOMPARE(house.stored().keys(), QStringList{path});

    targets.insertTarget(path, u"InCopy"_s, u"90"_s);
    QCOMPARE(targets.validTargets().value(path).value(u"Version"_s), u"90"_s);
}

void TargetsTest::firstGatheringAsksForReview_data()
{
    QTest::addColumn<int>("applications");
    QTest::addColumn<bool>("gatheredBefore");
    QTest::addColumn<qsizetype>("reviews");
    QTest::addRow("none") << 0 << false << qsizetype(1);
    QTest::addRow("one") << 1 << false << qsizetype(0);
    QTest::addRow("two") << 2 << false << qsizetype(1);
    QTest::addRow("two, later") << 2 << true << qsizetype(0);
}

void TargetsTest::firstGatheringAsksForReview()
{
    QFETCH(int, applications);
    QFETCH(bool, gatheredBefore);
    QFETCH(qsizetype, reviews);
    House house;
    house.state.setValue(gatheredKey, gatheredBefore);
    BrevokTargetApps targets(house.state, house.search);
    const QSignalSpy spy(&targets, &BrevokTargetApps::reviewWanted);
    for (int i = 0; i < applications; ++i) {
        house.install(u"InDesign 202%1"_s.arg(i), u"15000"_s);
    }
    house.notify(Notification::DidStartGathering);
    house.notify(Notification::GatheringProgress);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(house.state.value(gatheredKey).toBool(), gatheredBefore);
    house.notify(Notification::DidFinishGathering);
    house.notify(Notification::DidFinishGathering);
    QCOMPARE(spy.count(), reviews);
    QVERIFY(house.state.value(gatheredKey).toBool());
}

void TargetsTest::storedListIsReadWithCare()
{
    House house;
    const Record good{{u"Path"_s, u"/"_s}, {u"Version"_s, u"140"_s}, {u"Enabled"_s, u"yes"_s}};
    Record odd = good;
    odd.insert(u"Removed"_s, true);
    odd.insert(u"Invalid"_s, u"YES"_s);
    odd.insert(u"Unknown"_s, QJsonArray{1, Record()});
    house.store(u"/"_s, odd); // odd flags count as not set
    house.store(u"/tmp"_s, Record());
    BrevokTargetApps targets(house.state, house.search);
    QCOMPARE(targets.validTargets().keys(), QStringList{u"/"_s});
    targets.setTarget(u"/"_s, false);
    odd.insert(u"Enabled"_s, u"no"_s);
    QCOMPARE(house.stored(), (StateEntries{{u"/"_s, odd}, {u"/tmp"_s, Record()}})); // unknown keys included
}

void TargetsTest::searchIsStartedAndStopped()
{
    House house;
    {
        auto search = std::make_unique<testing::FakeApplicationSearch>();
        const BrevokTargetApps first(house.state, house.search);
        const BrevokTargetApps second(house.state, *search);
        QCOMPARE(BrevokTargetApps::targetApps(), &first);
        QVERIFY(house.search.running);
        QCOMPARE(house.search.patterns,
            (QStringList{u"*InDesign 20*"_s, u"*InDesign CS*"_s, u"*InDesign CC*"_s, u"*InCopy 20*"_s}));
        search.reset();
    }
    QVERIFY(!house.search.running);
    QCOMPARE(BrevokTargetApps::targetApps(), nullptr);
}

QTEST_GUILESS_MAIN(TargetsTest)
#include "test_targets.moc"
