// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/BoundedWork.h"
#include "ui/preferences/TargetOrder.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;

class TargetOrderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void targetsAreOrdered_data();
    void targetsAreOrdered();
    void versionsAreOffered();
    void plugInsPathsAreRecognised_data();
    void plugInsPathsAreRecognised();
};

void TargetOrderTest::targetsAreOrdered_data()
{
    QTest::addColumn<QList<OrderedTarget>>("targets");
    QTest::addColumn<QStringList>("expected");
    const auto plain = [](const QString &path, const QString &version) {
        return OrderedTarget{path, path, version};
    };
    QTest::newRow("higher version first")
        << QList<OrderedTarget>{plain(u"/a"_s, u"75"_s), plain(u"/b"_s, u"140"_s), plain(u"/c"_s, u"150"_s)}
        << QStringList{u"/c"_s, u"/b"_s, u"/a"_s};
    QTest::newRow("no version last") << QList<OrderedTarget>{plain(u"/a"_s, {}), plain(u"/b"_s, u"x"_s),
        plain(u"/c"_s, u"50"_s)} << QStringList{u"/c"_s, u"/b"_s, u"/a"_s};
    QTest::newRow("InDesign before InCopy") << QList<OrderedTarget>{plain(u"/InCopy/P"_s, u"140"_s),
        plain(u"/InDesign/P"_s, u"140"_s)} << QStringList{u"/InDesign/P"_s, u"/InCopy/P"_s};
    QTest::newRow("the resolved path counts") << QList<OrderedTarget>{{u"/InDesign/P"_s, u"/x/P"_s, u"140"_s},
        {u"/y/P"_s, u"/InDesign/P"_s, u"140"_s}}
                                              << QStringList{u"/y/P"_s, u"/InDesign/P"_s};
    QTest::newRow("Debug after its like")
        << QList<OrderedTarget>{plain(u"/Debug InDesign"_s, u"90"_s), plain(u"/InCopy"_s, u"90"_s),
               plain(u"/InDesign"_s, u"90"_s), plain(u"/InCopy Debug"_s, u"90"_s)}
        << QStringList{u"/InDesign"_s, u"/Debug InDesign"_s, u"/InCopy"_s, u"/InCopy Debug"_s};
    QTest::newRow("ties reverse") << QList<OrderedTarget>{plain(u"/a"_s, u"90"_s), plain(u"/b"_s, u"90"_s),
        plain(u"/c"_s, u"90.0"_s)} << QStringList{u"/c"_s, u"/b"_s, u"/a"_s};
}

void TargetOrderTest::targetsAreOrdered()
{
    QFETCH(QList<OrderedTarget>, targets);
    QTEST(sortedTargetPaths(targets), "expected");
    QCOMPARE(compareTargets(targets.first(), targets.first(), {targets.first().path}), 0);
}

void TargetOrderTest::versionsAreOffered()
{
    QStringList versions;
    QStringList names;
    for (int index = 0; index < targetVersionCount; ++index) {
        versions.append(targetVersion(index));
        names.append(targetVersionName(index));
    }
    QCOMPARE(versions.first(7).join(u' '), u"50 60 70 75 80 90 100"_s);
    QCOMPARE(names.first(7).join(u','), u"CS3,CS4,CS5,CS5.5,CS6,CC,CC 2014"_s);
    QCOMPARE(versions.last(), u"190"_s);
    QCOMPARE(names.last(), u"CC 2024"_s);
}

void TargetOrderTest::plugInsPathsAreRecognised_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("named");
    QTest::addColumn<bool>("beside");
    QTest::newRow("right") << u"ID/Plug-Ins"_s << true << true;
    QTest::newRow("slash behind") << u"ID/Plug-Ins/"_s << true << true;
    QTest::newRow("other case") << u"ID/plug-ins"_s << false << true;
    QTest::newRow("more in the name") << u"ID/Plug-Ins 2"_s << false << true;
    QTest::newRow("application deeper") << u"Plug-Ins"_s << true << true;
    QTest::newRow("InCopy") << u"IC/Plug-Ins"_s << true << false;
    QTest::newRow("only through a link") << u"linked/Plug-Ins"_s << true << false;
    QTest::newRow("no such folder") << u"none/Plug-Ins"_s << true << false;
}

void TargetOrderTest::plugInsPathsAreRecognised()
{
    QFETCH(QString, path);
    const QTemporaryDir folder;
    QDir disk(folder.path());
    for (const QString &made : {u"ID/x/Adobe InDesign CC 2019.app"_s, u"ID/Plug-Ins"_s,
             u"IC/Adobe InCopy.app"_s, u"IC/InDesign.APP"_s, u"linked"_s}) {
        QVERIFY(disk.mkpath(made));
    }
    QVERIFY(QFile::link(disk.filePath(u"ID"_s), disk.filePath(u"linked/there"_s)));
    QTEST(isPlugInsPath(disk.filePath(path)), "named");
    Pulse pulse;
    QTEST(hasInDesignBeside(disk.filePath(path), pulse), "beside");
    QVERIFY(!isPlugInsPath({}) && !isPlugInsPath(u"/"_s) && isPlugInsPath(u"/Plug-Ins"_s));
}

QTEST_GUILESS_MAIN(TargetOrderTest)
#include "test_target_order.moc"
