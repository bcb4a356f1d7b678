// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"
#include "TargetHouse.h"
#include "targets/TargetJudgement.h"

#include <QRegularExpression>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::House;

class TargetFoldersTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanupTestCase() { QVERIFY(finishBackgroundWork(10000)); }

    void oneFolderIsOneTarget_data();
    void oneFolderIsOneTarget();
    void oneFolderWithTwoNamesIsOne();
    void whatALinkLeadsToIsKnownWithoutAsking();
    void aFolderAddedByHandIsNotFoundTwice();
    void spellingsOfEarlierVersionsAreMerged();
    void volumesComeAndGo();
    void wrongTargetsAreRefused_data();
    void wrongTargetsAreRefused();
};

void TargetFoldersTest::oneFolderIsOneTarget_data()
{
    QTest::addColumn<QString>("spelling"); // from the folder of applications on
    QTest::addColumn<bool>("gone"); // the folder, by the time it is removed
    QTest::newRow("without a slash") << u"/InDesign CC/Plug-Ins"_s << false;
    QTest::newRow("slashes") << u"//InDesign CC///Plug-Ins//"_s << false;
    QTest::newRow("dots") << u"/./InDesign CC/../InDesign CC/Plug-Ins/."_s << false;
    QTest::newRow("a link") << u"/plugins"_s << false;
    QTest::newRow("a link on the way") << u"/link/Plug-Ins"_s << false;
    QTest::newRow("dots behind a link") << u"/elsewhere/../InDesign CC/Plug-Ins/"_s << false;
    QTest::newRow("a link on the way, to nothing") << u"/link/Plug-Ins"_s << true;
}

void TargetFoldersTest::oneFolderIsOneTarget()
{
    QFETCH(QString, spelling);
    QFETCH(bool, gone);
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
    targets.lookAt(house.applications + spelling, this, [&](const std::optional<FolderLook> &look) {
        answered = true;
        QCOMPARE(look && look->exists, !gone);
        const QString spelled = house.applications + spelling;
        if (spelling.startsWith(u"/elsewhere"_s)) {
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

// As where a disk is mounted twice.
void TargetFoldersTest::oneFolderWithTwoNamesIsOne()
{
    const FolderLook one{.exists = true, .isFolder = true, .resolved = u"/a"_s, .device = 1, .inode = 2};
    FolderLook other = one;
    other.resolved = u"/b"_s;
    QVERIFY(isSameFolder(one, other));
    other.device = 3;
    QVERIFY(!isSameFolder(one, other));
    QVERIFY(!isSameFolder({.resolved = u"/a"_s}, {.resolved = u"/b"_s})); // neither is there
}

void TargetFoldersTest::whatALinkLeadsToIsKnownWithoutAsking()
{
    House house;
    BrevokTargetApps targets(house.state, house.search);
    const QString path = house.install(u"InDesign CC"_s, u"9000"_s);
    const QString link = house.applications + u"/link"_s;
    QVERIFY(QFile::link(path, link));
    targets.insertTarget(link, u"InDesign"_s, u"90"_s);
    bool answered = false;
    targets.lookAt(link, this, [&answered](const auto & /*look*/) { answered = true; });
    QVERIFY(QTest::qWaitFor([&answered] { return answered; }));
    QCOMPARE(targets.recordPath(QFileInfo(path).canonicalFilePath() + u'/'), std::optional(link));
}

void TargetFoldersTest::aFolderAddedByHandIsNotFoundTwice()
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
}

void TargetFoldersTest::spellingsOfEarlierVersionsAreMerged()
{
    House house;
    const QString path = house.install(u"InDesign CC"_s, u"14000"_s);
    const QString other = house.install(u"InDesign CS6"_s, u"8000"_s);
    QVERIFY(QFile::link(other, house.applications + u"/link"_s));
    const auto record = [](const QString &key, const QString &removed) {
        return Record{
            {u"Path"_s, key}, {u"Version"_s, u"140"_s}, {u"Enabled"_s, u"yes"_s}, {u"Removed"_s, removed}};
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

void TargetFoldersTest::volumesComeAndGo()
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

void TargetFoldersTest::wrongTargetsAreRefused_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("version");
    QTest::addColumn<std::optional<FolderLook>>("look");
    QTest::addColumn<QString>("reason");
    using Look = std::optional<FolderLook>;
    const Look folder = FolderLook{.exists = true, .isFolder = true, .resolved = u"/a"_s};
    const Look root = FolderLook{.exists = true, .isFolder = true, .resolved = u"/"_s};
    const Look file = FolderLook{.exists = true, .resolved = u"/a"_s};
    const auto row = [](const char *title, const QString &path, const QString &version, const Look &look,
                         const QString &reason) {
        QTest::newRow(title) << path << version << look << reason;
    };
    const QString a = u"/a"_s;
    row("right", a, u"140"_s, folder, {});
    row("oldest", a, u"30"_s, folder, {});
    row("newest", a, u"999"_s, folder, {});
    row("relative", u"a/Plug-Ins"_s, u"140"_s, folder, u"absolute"_s);
    row("empty", u""_s, u"140"_s, folder, u"absolute"_s);
    row("root", u"/"_s, u"140"_s, root, u"root"_s);
    row("root, spelled", u"/a/.."_s, u"140"_s, root, u"root"_s);
    row("missing", a, u"140"_s, FolderLook{.resolved = a}, u"There is no folder '/a'"_s);
    row("file", a, u"140"_s, file, u"'/a' is not a folder"_s);
    row("silent", a, u"140"_s, std::nullopt, u"is not responding"_s);
    for (const char *version : {"9999999999999", "1000", "29", "-140", "0140", "140.0", "14.0", "CC", ""}) {
        row(version, a, QString::fromLatin1(version), folder, u"from 30 to 999, such as 140"_s);
    }
}

void TargetFoldersTest::wrongTargetsAreRefused()
{
    QFETCH(QString, path);
    QFETCH(QString, version);
    QFETCH(std::optional<FolderLook>, look);
    QFETCH(QString, reason);
    const std::optional<QString> refused = whyNoTarget(path, version, look);
    QCOMPARE(refused.has_value(), !reason.isEmpty());
    QVERIFY2(refused.value_or(QString()).contains(reason), qPrintable(refused.value_or(QString())));
}

QTEST_GUILESS_MAIN(TargetFoldersTest)
#include "test_target_folders.moc"
