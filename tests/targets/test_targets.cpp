// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"
#include "support/FolderTest.h"
#include "support/InRow.h"
#include "TargetHouse.h"
#include "targets/MarketingNames.h"

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::House;
using testing::InRow;
using Notification = ApplicationSearch::Notification;

namespace {

const QString gatheredKey = TargetSettings::gathered;

Record target(const QJsonValue &type, const QJsonValue &version)
{
    return {{u"Type"_s, type}, {u"Version"_s, version}};
}

} // namespace

class TargetsTest : public testing::FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void versionsHaveShortNames()
    {
        const QList<std::tuple<const char *, const char *>> rows{{"", "-"}, {"CS6", "-"}, {"29", "-"},
            {"30", "CS"}, {"75", "CS5.5"}, {"89", "CS6"}, {"90", "CC"}, {"7536", "CC"}, {"-5", "-"}};
        for (const auto &[version, name] : rows) {
            const InRow in(version);
            QCOMPARE(getVersionString(QString::fromLatin1(version)), QLatin1StringView(name));
        }
    }

    void targetsHaveLabels()
    {
        for (const Record &odd : {target(5, 140), Record()}) {
            QCOMPARE(targetLabel(odd), u"InDesign CC [0]"_s);
        }
        const QList<std::tuple<const char *, const char *, const char *>> rows{
            {"Adobe InDesign", "75", "Adobe InDesign CS5.5"}, {"InDesign", "30", "InDesign CS"},
            {"InDesign CS", "49", "InDesign CS2"}, {"InDesign CS", "50", "InDesign CS3"},
            {"InCopy CC", "80", "InCopy CC CS6"}, {"InCopy", "60", "InCopy CS4"}, {"", "74", "InDesign CS5"},
            {"InCopy CC", "99", "InCopy CC"}, {"InDesign CS", "90", "InDesign CS CC"},
            {"InDesign", "109", "InDesign CC 2014"}, {"InDesign", "110", "InDesign CC 2015"},
            {"InDesign", "120", "InDesign CC 2017"}, {"InDesign", "139", "InDesign CC 2018"},
            {"Adobe InDesign CC", "140", "Adobe InDesign CC 2019"}, {"InDesign", "150", "InDesign CC 2020"},
            {"InDesign", "160", "InDesign CC 2021"}, {"InDesign", "170", "InDesign CC 2022"},
            {"InDesign", "180", "InDesign CC 2023"}, {"InDesign", "199", "InDesign CC 2024"},
            {"InDesign", "200", "InDesign CC [200]"}, {"InDesign", "29", "InDesign CC [29]"},
            {"InDesign", "", "InDesign CC [0]"}};
        for (const auto &[type, version, label] : rows) {
            const InRow in(label);
            const Record record = target(QString::fromLatin1(type), QString::fromLatin1(version));
            QCOMPARE(targetLabel(record), QLatin1StringView(label));
            QCOMPARE(targetCellLabel(u"/a/"_s, record), u"/a/ [%1]"_s.arg(QLatin1StringView(label)));
        }
    }

    void foundApplicationsBecomeTargets()
    {
        const QList<std::tuple<const char *, QString, QString>> rows{
            {"14.0", u"14012"_s, u"140"_s},
            {"7.5", u"7536"_s, u"75"_s},
            {"dotted", u"15.0.2"_s, u"0"_s},
            {"toward zero", u"-150"_s, u"-1"_s},
        };
        for (const auto &[name, bundleVersion, version] : rows) {
            const InRow in(name);
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
    }

    void otherBundlesAreSkipped()
    {
        const auto list = [](const QMap<QString, QString> &changes, const QByteArray &more = {}) {
            QMap<QString, QString> information{
                {u"CFBundlePackageType"_s, u"APPL"_s}, {u"CFBundleSignature"_s, u"InCp"_s}};
            information.insert(changes);
            return testing::propertyList(information).replace("</dict>", more + "</dict>");
        };
        const QString version = u"CFBundleVersion"_s;
        const QList<std::tuple<const char *, QByteArray, qsizetype>> rows{
            {"without a name", list({{version, u"14012"_s}}), 1},
            {"not an application", list({{version, u"14012"_s}, {u"CFBundlePackageType"_s, u"BNDL"_s}}), 0},
            {"another signature", list({{version, u"14012"_s}, {u"CFBundleSignature"_s, u"indn"_s}}), 0},
            {"empty version", list({{version, u""_s}}), 0},
            {"version not a text", list({}, "<key>CFBundleVersion</key><integer>14012</integer>"), 0},
        };
        for (const auto &[name, information, count] : rows) {
            const InRow in(name);
            House house;
            BrevokTargetApps targets(house.state, house.search);
            house.install(u"InDesign 2019"_s, u"14012"_s);
            QVERIFY(testing::writeFile(house.search.found.first() + u"/Contents/Info.plist"_s, information));
            house.search.found.append(house.applications + u"/gone/InDesign 2020.app"_s);
            house.notify();
            QCOMPARE(targets.allRecords().size(), count);
        }
    }

    void linkedApplicationsCountWhereTheyAre()
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

    void recordsFollowTheirApplications()
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

    void knownRecordsAreReplacedOnlyForAnotherVersion()
    {
        const QList<std::tuple<const char *, QJsonValue, bool>> rows{
            {"same", u"140"_s, false},
            {"other", u"140.0"_s, true},
            {"empty", u""_s, true},
            {"number", 140, true},
            {"missing", QJsonValue::Undefined, false},
        };
        for (const auto &[name, version, replaced] : rows) {
            const InRow in(name);
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
    }

    void usersChangesAreBracketedAndSaved()
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

    void firstGatheringAsksForReview()
    {
        const QList<std::tuple<const char *, int, bool, qsizetype>> rows{
            {"none", 0, false, 1},
            {"one", 1, false, 0},
            {"two", 2, false, 1},
            {"two, later", 2, true, 0},
        };
        for (const auto &[name, applications, gatheredBefore, reviews] : rows) {
            const InRow in(name);
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
    }

    void storedListIsReadWithCare()
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
        QCOMPARE(
            house.stored(), (StateEntries{{u"/"_s, odd}, {u"/tmp"_s, Record()}})); // unknown keys included
    }

    void searchIsStartedAndStopped()
    {
        House house;
        {
            auto search = std::make_unique<testing::FakeApplicationSearch>();
            const BrevokTargetApps targets(house.state, house.search);
            const BrevokTargetApps other(house.state, *search);
            search.reset(); // may go first
            QVERIFY(house.search.running);
            QCOMPARE(house.search.patterns,
                (QStringList{u"*InDesign 20*"_s, u"*InDesign CS*"_s, u"*InDesign CC*"_s, u"*InCopy 20*"_s}));
        }
        QVERIFY(!house.search.running);
    }
};

QTEST_GUILESS_MAIN(TargetsTest)
#include "test_targets.moc"
