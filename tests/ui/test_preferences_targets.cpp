// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "PreferencesDesk.h"
#include "support/SampleBundles.h"
#include "ui/preferences/TargetRowDelegate.h"
#include "WindowTest.h"

#include <QComboBox>
#include <QDropEvent>
#include <QFontMetrics>
#include <QLabel>
#include <QMimeData>

using namespace brevok;
using namespace brevok::testing;

namespace {

// What is below the pointer decides who gets it.
void drop(const Desk &desk, const QStringList &paths)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &path : paths) {
        urls.append(path.startsWith(u'/') ? QUrl::fromLocalFile(path) : QUrl(path));
    }
    data.setUrls(urls);
    QWidget *below = desk.table()->viewport();
    QDragEnterEvent enter(
        QPoint(5, 5), Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(below, &enter);
    QVERIFY(enter.isAccepted());
    QCOMPARE(enter.dropAction(), Qt::CopyAction);
    QDropEvent dropped(QPointF(5, 5), Qt::MoveAction | Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(below, &dropped);
}

} // namespace

class PreferencesTargetsTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    void tableFollowsTheTargets()
    {
        Desk desk;
        desk.targets->insertTarget(u"/A/Plug-Ins"_s, u"Adobe InDesign"_s, u"140"_s);
        desk.targets->insertTarget(u"/B/Plug-Ins"_s, u"Adobe InDesign"_s, u"150"_s);
        desk.openTargets();
        const QString first = u"/B/Plug-Ins [Adobe InDesign CC 2020]"_s;
        const QString second = u"/A/Plug-Ins [Adobe InDesign CC 2019]"_s;
        QCOMPARE(desk.rows(), (QStringList{first, second}));

        // Sorted once: what comes later stands behind, though its version is higher.
        const QString path = u"/<b>"_s + QString(300, u'W') + u"\n/Plug-Ins"_s;
        desk.targets->insertTarget(path, u"InCopy"_s, u"190"_s);
        const QString label = desk.rows().value(2);
        QVERIFY(label.startsWith(u"/<b>W"_s) && !label.contains(u'\n'));
        QVERIFY(desk.table()->model()->index(2, 1).data(Qt::ToolTipRole).toString().contains(u"&lt;b&gt;"_s));
        desk.targets->removeTarget(u"/B/Plug-Ins"_s);
        QCOMPARE(desk.rows(), (QStringList{second, label}));
    }

    void namesAreSeenAtTheFirstWidth()
    {
        Desk desk;
        const QString deep = u"/home/ada/"_s + QString(4000, u'W') + u"/Adobe InDesign CC 2019/Plug-Ins/"_s;
        const QString rightToLeft =
            u"/home/\u05e2\u05d3\u05d4/"_s + QString(200, QChar(0x5d0)) + u"/Plug-Ins"_s;
        desk.targets->insertTarget(deep, u"Adobe InDesign"_s, u"140"_s);
        desk.targets->insertTarget(rightToLeft, QString(300, u'N'), u"150"_s);
        desk.targets->insertTarget(u"/A/Plug-Ins"_s, u"Adobe InDesign"_s, u"160"_s);
        desk.openTargets();
        const QTableView *table = desk.table();
        QCOMPARE(table->columnWidth(0) + table->columnWidth(1), table->viewport()->width());
        QVERIFY(desk.rows().at(2).endsWith(
            u"/Plug-Ins/ [Adobe InDesign CC 2019]"_s)); // as screen readers have it

        const QFontMetrics metrics = table->fontMetrics();
        const int width = table->columnWidth(1);
        const QString name = u"Adobe InDesign CC 2019"_s;
        const QString cut = fittedLabel(deep, name, width, metrics);
        QVERIFY(cut.startsWith(u"/home/ada/W"_s) && cut.contains(u'…') && cut.endsWith(u'[' + name + u']'));
        QVERIFY(cut.section(u" ["_s, 0, 0).endsWith(u"/Plug-Ins/"_s));
        for (int room = 0; room < width; room += 7) {
            const QString label = fittedLabel(deep, name, room, metrics);
            QVERIFY2(metrics.horizontalAdvance(label) <= std::max(room, metrics.horizontalAdvance(u'…')),
                qPrintable(label));
        }
        QVERIFY(fittedLabel(rightToLeft, QString(300, u'N'), width, metrics).endsWith(u'…'));
    }

    void targetsAreSwitched()
    {
        Desk desk;
        desk.addTargets({u"/A"_s, u"/B"_s});
        desk.openTargets();
        const auto state = [&desk](int row) {
            return desk.table()->model()->index(row, 0).data(Qt::CheckStateRole).value<Qt::CheckState>();
        };
        desk.table()->selectRow(0);
        for (const bool on : {false, true}) {
            QTest::keyClick(desk.table(), Qt::Key_Space);
            QCOMPARE(desk.targets->targetState(u"/B"_s), on);
            QCOMPARE(state(0), on ? Qt::Checked : Qt::Unchecked);
        }
        const QRect box = desk.table()->visualRect(desk.table()->model()->index(1, 0));
        QTest::mouseClick(
            desk.table()->viewport(), Qt::LeftButton, {}, QPoint(box.left() + 10, box.center().y()));
        QVERIFY(!desk.targets->targetState(u"/A"_s));
    }

    void removedTargetsComeBack()
    {
        Desk desk;
        desk.addTargets({u"/C"_s, u"/B"_s, u"/A"_s}); // as they are ordered
        desk.targets->setTarget(u"/B"_s, false);
        const TargetRecords before = desk.targets->allRecords();
        desk.openTargets();
        QVERIFY(QTest::qWaitForWindowActive(&*desk.window));
        const QStringList rows = desk.rows();
        auto *remove = desk.find<QPushButton>("removeButton");
        auto *undo = desk.find<QPushButton>("undoButton");
        const auto *said = desk.find<QLabel>("removedText");
        const auto removeRow = [&desk](int row) {
            desk.table()->setFocus();
            desk.table()->clearSelection();
            desk.table()->selectRow(row);
            QTest::keyClick(desk.table(), Qt::Key_Delete);
        };
        QVERIFY(!undo->isVisible() && !remove->isEnabled());
        QTest::keyClick(desk.table(), Qt::Key_Delete); // nothing is selected
        QCOMPARE(desk.targets->allRecords(), before);

        removeRow(1);
        QCOMPARE(desk.rows().size(), 2);
        QCOMPARE(said->text(), u"Removed Adobe InDesign CC 2019."_s);
        QVERIFY(undo->isVisible() && said->toolTip().contains(u"/B"_s));
        QTest::keyClick(desk.table(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(desk.targets->allRecords(), before); // disabled as it was
        QCOMPARE(desk.rows(), rows);
        QCOMPARE(selectedPaths(desk), QStringList{u"/B"_s});
        QVERIFY(!undo->isVisible());

        // Of several removals the last, by the button, which has the focus where the other can do no more.
        removeRow(0);
        desk.table()->selectAll();
        remove->setFocus();
        desk.click("removeButton");
        QCOMPARE(said->text(), u"Removed 2 targets."_s);
        QVERIFY(desk.find<QLabel>("noTargets")->isVisible() && !remove->isEnabled());
        QCOMPARE(desk.window->focusWidget(), undo);
        QTest::keyClick(undo, Qt::Key_Space);
        QCOMPARE(desk.rows(), rows.sliced(1));
        QVERIFY(!desk.find<QLabel>("noTargets")->isVisible());
        QCOMPARE(desk.window->focusWidget(), desk.table());

        // What came back otherwise, or was removed before the window closed, is not brought back again.
        removeRow(0);
        desk.targets->insertTarget(u"/B"_s, u"Adobe InDesign"_s, u"150"_s);
        QVERIFY(!undo->isVisible());
        removeRow(0);
        desk.window->close();
        desk.window->showTargets();
        QVERIFY(!undo->isVisible());
        QTest::keyClick(desk.table(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(desk.rows().size(), 1);
    }

    void foldersAreDropped()
    {
        Desk desk;
        const QString first = desk.makeHost(u"InDesign A"_s, u"14012"_s);
        const QString second = desk.makeHost(u"InDesign B"_s, u"7536"_s);
        const QString file = desk.folder.filePath(u"file"_s);
        QVERIFY(writeFile(file, "text"));
        desk.openTargets();
        drop(desk, {first, file, second});
        QTRY_COMPARE(shownNotice(desk), u"'%1' is not a folder."_s.arg(file));
        QCOMPARE(desk.targets->targets().keys(), (QStringList{first, second}));
        QCOMPARE(desk.targets->targets().value(second).value(TargetKeys::version).toString(), u"75"_s);
        QCOMPARE(selectedPaths(desk), QStringList{second});
        QVERIFY(desk.sheet() == nullptr && desk.presenter.sheets.isEmpty());
        // Nothing of all this can be added.
        drop(desk, {first, u"smb://server/Plug-Ins"_s, desk.folder.filePath(u"gone/Plug-Ins"_s)});
        QTRY_COMPARE(shownNotice(desk), u"'%1' is already in the list (and 2 more)"_s.arg(first));
        QCOMPARE(desk.targets->allRecords().size(), 2);
    }

    void dropOfOtherFoldersIsAskedFor()
    {
        Desk desk;
        const QString inCopy = desk.makeHost(u"Adobe InCopy"_s, u"15000"_s, u"InCp"_s);
        const QString bare = desk.folder.filePath(u"Bare"_s);
        QVERIFY(QDir().mkpath(bare));
        desk.openTargets();
        drop(desk, {inCopy, bare, desk.folder.path()});
        QTRY_VERIFY(desk.sheet() != nullptr && desk.find<QPushButton>("addTarget")->isEnabled());
        QCOMPARE(desk.find<QComboBox>("targetApp")->currentText(), u"InCopy"_s);
        desk.click("addTarget");
        QTRY_COMPARE(desk.presenter.sheets.size(), 1);
        desk.presenter.completions.takeFirst()(alertFirstButton);
        QCOMPARE(desk.targets->targets().keys(), QStringList{inCopy});
        // The next one; Cancel ends the whole.
        QTRY_VERIFY(desk.sheet() != nullptr && desk.find<QPushButton>("addTarget")->isEnabled());
        QVERIFY(desk.find<QComboBox>("targetPath")->toolTip().contains(u"Bare"_s));
        desk.click("cancelTarget");
        QTRY_VERIFY(desk.find<QDialog>("targetDataSheet") == nullptr);
        QVERIFY(shownNotice(desk).isEmpty());
        QCOMPARE(desk.targets->targets().size(), 1);
    }
};

QTEST_MAIN(PreferencesTargetsTest)
#include "test_preferences_targets.moc"
