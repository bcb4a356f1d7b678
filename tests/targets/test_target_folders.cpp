// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"
#include "support/FolderTest.h"
#include "support/InRow.h"
#include "TargetHouse.h"
#include "targets/TargetJudgement.h"

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::House;
using testing::InRow;

class TargetFoldersTest : public testing::FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void oneFolderIsOneTarget()
    {
        // from the folder of applications on
        const QList<std::tuple<const char *, QString, bool>> rows{
            // the folder, by the time it is removed
            {"without a slash", u"/InDesign CC/Plug-Ins"_s, false},
            {"slashes", u"//InDesign CC///Plug-Ins//"_s, false},
            {"dots", u"/./InDesign CC/../InDesign CC/Plug-Ins/."_s, false},
            {"a link", u"/plugins"_s, false},
            {"a link on the way", u"/link/Plug-Ins"_s, false},
            {"dots behind a link", u"/elsewhere/../InDesign CC/Plug-Ins/"_s, false},
            {"a link on the way, to nothing", u"/link/Plug-Ins"_s, true},
        };
        for (const auto &[name, spelling, gone] : rows) {
            const InRow in(name);
            House house;
            BrevokTargetApps targets(house.state, house.search);
            const QString path = house.install(u"InDesign CC"_s, u"9000"_s);
            QVERIFY(QDir(house.applications).mkpath(u"deep/below"_s));
            QVERIFY(QDir(house.applications).mkpath(u"deep/InDesign CC/Plug-Ins"_s));
            QVERIFY(QFile::link(path, house.applications + u"/plugins"_s));
            QVERIFY(QFile::link(house.applications + u"/InDesign CC"_s, house.applications + u"/link"_s));
            QVERIFY(QFile::link(house.applications + u"/deep/below"_s, house.applications + u"/elsewhere"_s));
            house.notify();
            if (gone) {
                QVERIFY(QDir(path).removeRecursively());
            }

            bool answered = false;
            const bool exists = !gone;
            const QString spelled = house.applications + spelling;
            targets.lookAt(spelled, this, [&](const std::optional<FolderLook> &look) {
                answered = true;
                QCOMPARE(look && look->exists, exists);
                if (spelled.contains(u"/elsewhere"_s)) {
                    QVERIFY(!targets.recordPath(spelled)); // it only looks the same
                    return;
                }
                QCOMPARE(targets.recordPath(spelled), std::optional(path));
                targets.setTarget(spelled, false);
                QVERIFY(!targets.targetState(path));
                targets.insertTarget(spelled, u"InCopy"_s, u"75"_s);
                QCOMPARE(targets.allRecords().keys(), QStringList{path});
                QCOMPARE(targets.validTargets().value(path).value(TargetKeys::path), QJsonValue(path));
                QCOMPARE(targets.validTargets().value(path).value(TargetKeys::version), QJsonValue(u"75"_s));
                QCOMPARE(Record(house.stored().value(path)), targets.validTargets().value(path));
                targets.removeTarget(spelled);
                QVERIFY(targets.targets().isEmpty());
                QCOMPARE(Record(house.stored().value(path)), targets.allRecords().value(path));
            });
            QTRY_VERIFY(answered);
        }
    }

    // As where a disk is mounted twice.
    void oneFolderWithTwoNamesIsOne()
    {
        const FolderLook one{.exists = true, .isFolder = true, .resolved = u"/a"_s, .device = 1, .inode = 2};
        FolderLook other = one;
        other.resolved = u"/b"_s;
        QVERIFY(isSameFolder(one, other));
        other.device = 3;
        QVERIFY(!isSameFolder(one, other));
        QVERIFY(!isSameFolder({.resolved = u"/a"_s}, {.resolved = u"/b"_s})); // neither is there
    }

    void aFolderAddedByHandIsNotFoundTwice()
    {
        House house;
        BrevokTargetApps targets(house.state, house.search);
        const QString path = QDir::cleanPath(house.install(u"InDesign CC"_s, u"9000"_s));
        QVERIFY(QFile::link(path, house.applications + u"/link"_s));
        targets.insertTarget(house.applications + u"/link"_s, u"InDesign"_s, u"90"_s);
        house.notify();
        QCOMPARE(targets.allRecords().keys(), QStringList{house.applications + u"/link"_s});
        // Another version replaces the record, which keeps its path.
        house.install(u"InDesign CC"_s, u"14000"_s);
        house.notify();
        QCOMPARE(targets.allRecords().keys(), QStringList{house.applications + u"/link"_s});
        QCOMPARE(targets.validTargets().first().value(TargetKeys::version), QJsonValue(u"140"_s));
        QCOMPARE(targets.recordPath(path), std::optional(house.applications + u"/link"_s)); // never looked at
    }

    void spellingsOfEarlierVersionsAreMerged()
    {
        House house;
        const QString path = house.install(u"InDesign CC"_s, u"14000"_s);
        const QString other = house.install(u"InDesign CS6"_s, u"8000"_s);
        QVERIFY(QFile::link(other, house.applications + u"/link"_s));
        const auto record = [](const QString &key, const QString &removed) {
            return Record{{u"Path"_s, key}, {u"Version"_s, u"140"_s}, {u"Enabled"_s, u"yes"_s},
                {u"Removed"_s, removed}};
        };
        const QString plain = QDir::cleanPath(path);
        const QString link = house.applications + u"/link"_s;
        for (const QString &spelling : {path, plain, link}) {
            house.store(spelling, record(spelling, u"no"_s));
        }
        house.store(other, record(other, u"yes"_s));
        BrevokTargetApps targets(house.state, house.search);
        house.search.found.clear();
        house.notify();
        // The spelling of the search stays, unless the user sees another.
        QCOMPARE(targets.allRecords().keys(), (QStringList{path, link}));
        const StateEntries stored = house.stored();
        QCOMPARE(QSet<QString>(stored.keyBegin(), stored.keyEnd()), (QSet<QString>{path, link}));
    }

    void volumesComeAndGo()
    {
        House house;
        BrevokTargetApps targets(house.state, house.search);
        const QString volume = house.applications + u"/Volume"_s;
        const QString path = volume + u"/Plug-Ins"_s;
        QVERIFY(QDir().mkpath(path));
        targets.insertTarget(path, u"InCopy"_s, u"90"_s);
        QVERIFY(QFile::rename(volume, volume + u" away"_s));
        House::await([&] { Q_EMIT house.search.volumesChanged(); });
        QVERIFY(targets.targets().isEmpty());
        QVERIFY(QFile::rename(volume + u" away"_s, volume));
        house.notify(); // a folder that was made anew is no volume
        QVERIFY(targets.targets().isEmpty());
        House::await([&] { Q_EMIT house.search.volumesChanged(); });
        QVERIFY(targets.targets().contains(path));
    }

    void wrongTargetsAreRefused()
    {
        using Look = std::optional<FolderLook>;
        const Look folder = FolderLook{.exists = true, .isFolder = true, .resolved = u"/a"_s};
        const Look root = FolderLook{.exists = true, .isFolder = true, .resolved = u"/"_s};
        const Look file = FolderLook{.exists = true, .resolved = u"/a"_s};
        const Look missing = FolderLook{.resolved = u"/a"_s};
        const QString a = u"/a"_s;
        const auto refused = [](const QString &path, const char *version, const Look &look) {
            return whyNoTarget(path, QString::fromLatin1(version), look).value_or(u"none"_s);
        };
        for (const char *version : {"140", "30", "999"}) {
            QCOMPARE(refused(a, version, folder), u"none"_s);
        }
        for (const char *version :
            {"9999999999999", "1000", "29", "-140", "0140", "140.0", "14.0", "CC", ""}) {
            QVERIFY2(refused(a, version, folder).contains(u"from 30 to 999, such as 140"_s), version);
        }
        const QList<std::tuple<const char *, QString, Look, QString>> rows{
            {"relative", u"a/Plug-Ins"_s, folder, u"absolute"_s},
            {"empty", u""_s, folder, u"absolute"_s},
            {"root", u"/"_s, root, u"root"_s},
            {"root, spelled", u"/a/.."_s, root, u"root"_s},
            {"missing", a, missing, u"There is no folder '/a'"_s},
            {"file", a, file, u"'/a' is not a folder"_s},
            {"silent", a, std::nullopt, u"is not responding"_s},
        };
        for (const auto &[name, path, look, reason] : rows) {
            QVERIFY2(refused(path, "140", look).contains(reason), name);
        }
    }
};

QTEST_GUILESS_MAIN(TargetFoldersTest)
#include "test_target_folders.moc"
