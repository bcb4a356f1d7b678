// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/BoundedWork.h"
#include "support/InRow.h"
#include "ui/preferences/TargetOrder.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::InRow;

class TargetOrderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void targetsAreOrdered()
    {
        // Each as PATH=VERSION, or as PATH>RESOLVED=VERSION.
        const QList<std::tuple<const char *, QString, QString>> rows{
            {"higher version first", u"/a=75,/b=140,/c=150"_s, u"/c,/b,/a"_s},
            {"no version last", u"/a=,/b=x,/c=50"_s, u"/c,/b,/a"_s},
            {"InDesign before InCopy", u"/InCopy/P=140,/InDesign/P=140"_s, u"/InDesign/P,/InCopy/P"_s},
            {"the resolved path counts", u"/InDesign/P>/x/P=140,/y/P>/InDesign/P=140"_s,
                u"/y/P,/InDesign/P"_s},
            {"Debug after its like", u"/Debug InDesign=90,/InCopy=90,/InDesign=90,/InCopy Debug=90"_s,
                u"/InDesign,/Debug InDesign,/InCopy,/InCopy Debug"_s},
            {"ties reverse", u"/a=90,/b=90,/c=90.0"_s, u"/c,/b,/a"_s},
        };
        for (const auto &[name, given, expected] : rows) {
            const InRow in(name);
            QList<OrderedTarget> targets;
            const QStringList each = given.split(u',');
            for (const QString &one : each) {
                const QString paths = one.section(u'=', 0, 0);
                targets.append({paths.section(u'>', 0, 0), paths.section(u'>', -1), one.section(u'=', 1)});
            }
            QCOMPARE(sortedTargetPaths(targets).join(u','), expected);
        }
    }

    void versionsAreOffered()
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

    void plugInsPathsAreRecognised()
    {
        const QList<std::tuple<const char *, QString, bool, bool>> rows{
            {"right", u"ID/Plug-Ins"_s, true, true},
            {"slash behind", u"ID/Plug-Ins/"_s, true, true},
            {"other case", u"ID/plug-ins"_s, false, true},
            {"more in the name", u"ID/Plug-Ins 2"_s, false, true},
            {"application deeper", u"Plug-Ins"_s, true, true},
            {"InCopy", u"IC/Plug-Ins"_s, true, false},
            {"only through a link", u"linked/Plug-Ins"_s, true, false},
            {"no such folder", u"none/Plug-Ins"_s, true, false},
        };
        const QTemporaryDir folder;
        QDir disk(folder.path());
        for (const QString &made : {u"ID/x/Adobe InDesign CC 2019.app"_s, u"ID/Plug-Ins"_s,
                 u"IC/Adobe InCopy.app"_s, u"IC/InDesign.APP"_s, u"linked"_s}) {
            QVERIFY(disk.mkpath(made));
        }
        QVERIFY(QFile::link(disk.filePath(u"ID"_s), disk.filePath(u"linked/there"_s)));
        for (const auto &[name, path, named, beside] : rows) {
            const InRow in(name);
            QCOMPARE(isPlugInsPath(disk.filePath(path)), named);
            Pulse pulse;
            QCOMPARE(hasInDesignBeside(disk.filePath(path), pulse), beside);
        }
        QVERIFY(!isPlugInsPath({}) && !isPlugInsPath(u"/"_s) && isPlugInsPath(u"/Plug-Ins"_s));
    }
};

QTEST_GUILESS_MAIN(TargetOrderTest)
#include "test_target_order.moc"
