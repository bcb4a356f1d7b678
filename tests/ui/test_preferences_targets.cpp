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
#include <QScrollBar>

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
        QCOMPARE(desk.rows().size(), 3);
        const QString label = desk.rows().last();
        QVERIFY(label.startsWith(u"/<b>W"_s) && !label.contains(u'\n'));
        QVERIFY(desk.table()->model()->index(2, 1).data(Qt::ToolTipRole).toString().contains(u"&lt;b&gt;"_s));

        const auto state = [&desk](int row) {
            return desk.table()->model()->index(row, 0).data(Qt::CheckStateRole).value<Qt::CheckState>();
        };
        desk.targets->setTarget(u"/A/Plug-Ins"_s, false);
        QCOMPARE(state(1), Qt::Unchecked);
        desk.targets->removeTarget(u"/B/Plug-Ins"_s);
        QCOMPARE(desk.rows(), (QStringList{second, label}));
        QVERIFY(!desk.find<QLabel>("noTargets")->isVisible());
        desk.targets->removeTarget(u"/A/Plug-Ins"_s);
        desk.targets->removeTarget(path);
        QVERIFY(desk.find<QLabel>("noTargets")->isVisible());
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
        QTableView *table = desk.table();
        QVERIFY(!table->horizontalScrollBar()->isVisible());
        QCOMPARE(table->columnWidth(0) + table->columnWidth(1), table->viewport()->width());
        QVERIFY(desk.rows().at(2).endsWith(
            u"/Plug-Ins/ [Adobe InDesign CC 2019]"_s)); // as screen readers have it

        const QFontMetrics metrics = table->fontMetrics();
        const int width = table->columnWidth(1);
        const QString name = u"Adobe InDesign CC 2019"_s;
        QCOMPARE(fittedLabel(u"/A"_s, name, width, metrics), u"/A [Adobe InDesign CC 2019]"_s);
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

    void tableIsUsedByKeyboard()
    {
        Desk desk;
        desk.targets->insertTarget(u"/A"_s, u"InDesign"_s, u"140"_s);
        desk.targets->insertTarget(u"/B"_s, u"InDesign"_s, u"140"_s);
        desk.targets->insertTarget(u"/C"_s, u"InDesign"_s, u"140"_s);
        desk.openTargets();
        auto *remove = desk.find<QPushButton>("removeButton");
        QVERIFY(!remove->isEnabled());
        desk.table()->setFocus();
        desk.table()->selectRow(0);
        QVERIFY(remove->isEnabled());
        QTest::keyClick(desk.table(), Qt::Key_Space);
        QVERIFY(!desk.targets->targetState(u"/C"_s));
        QTest::keyClick(desk.table(), Qt::Key_Space);
        QVERIFY(desk.targets->targetState(u"/C"_s));
        const QRect box = desk.table()->visualRect(desk.table()->model()->index(1, 0));
        QTest::mouseClick(
            desk.table()->viewport(), Qt::LeftButton, {}, QPoint(box.left() + 10, box.center().y()));
        QVERIFY(!desk.targets->targetState(u"/B"_s));

        desk.table()->selectAll();
        QTest::mouseClick(remove, Qt::LeftButton);
        QVERIFY(desk.targets->targets().isEmpty());
        QVERIFY(!remove->isEnabled());
        QVERIFY(desk.find<QLabel>("noTargets")->isVisible());
        desk.find<QPushButton>("undoButton")->click();
        QVERIFY(!desk.find<QLabel>("noTargets")->isVisible());
        QCOMPARE(desk.targets->targets().size(), 3);
    }

    void removedTargetsComeBack()
    {
        Desk desk;
        const QStringList paths{u"/C"_s, u"/B"_s, u"/A"_s}; // as they are ordered
        for (const QString &path : paths) {
            desk.targets->insertTarget(path, u"Adobe InDesign"_s, u"140"_s);
        }
        desk.targets->setTarget(u"/B"_s, false);
        const TargetRecords before = desk.targets->allRecords();
        desk.openTargets();
        QVERIFY(QTest::qWaitForWindowActive(&*desk.window));
        const QStringList rows = desk.rows();
        auto *undo = desk.find<QPushButton>("undoButton");
        const auto *said = desk.find<QLabel>("removedText");
        QVERIFY(!undo->isVisible());
        QTest::keyClick(desk.table(), Qt::Key_Delete); // nothing is selected
        QCOMPARE(desk.targets->allRecords(), before);

        desk.table()->setFocus();
        desk.table()->selectRow(1);
        QTest::keyClick(desk.table(), Qt::Key_Delete);
        QCOMPARE(desk.rows().size(), 2);
        QVERIFY(undo->isVisible());
        QCOMPARE(said->text(), u"Removed Adobe InDesign CC 2019."_s);
        QVERIFY(said->toolTip().contains(u"/B"_s));
        QCOMPARE(desk.targets->allRecords().value(u"/B"_s).value(TargetKeys::removed).toString(), u"yes"_s);
        QTest::keyClick(desk.table(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(desk.targets->allRecords(), before); // disabled as it was
        QCOMPARE(desk.rows(), rows);
        QCOMPARE(selectedPaths(desk), QStringList{u"/B"_s});
        QVERIFY(!undo->isVisible());

        // Of several removals the last, by the button, which has the focus where the other can do no more.
        desk.table()->clearSelection();
        desk.table()->selectRow(0);
        QTest::keyClick(desk.table(), Qt::Key_Delete);
        desk.table()->selectAll();
        desk.find<QPushButton>("removeButton")->setFocus();
        desk.click("removeButton");
        QCOMPARE(said->text(), u"Removed 2 targets."_s);
        QCOMPARE(desk.window->focusWidget(), undo);
        QTest::keyClick(undo, Qt::Key_Space);
        QCOMPARE(desk.rows(), rows.sliced(1));
        QCOMPARE(desk.window->focusWidget(), desk.table());

        // What came back otherwise, or was removed before the window closed, is not brought back again.
        desk.table()->selectRow(0);
        QTest::keyClick(desk.table(), Qt::Key_Delete);
        desk.targets->insertTarget(u"/B"_s, u"Adobe InDesign"_s, u"150"_s);
        QVERIFY(!undo->isVisible());
        desk.table()->selectRow(0);
        QTest::keyClick(desk.table(), Qt::Key_Delete);
        desk.window->close();
        desk.window->showTargets();
        QVERIFY(!undo->isVisible());
        QTest::keyClick(desk.table(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(desk.rows().size(), 1);
    }

    void foldersAreDropped()
    {
        Desk desk;
        const QString first =
            QDir::cleanPath(writeHostApplication(desk.folder.path(), u"InDesign A"_s, u"14012"_s));
        const QString second =
            QDir::cleanPath(writeHostApplication(desk.folder.path(), u"InDesign B"_s, u"7536"_s));
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
        const QString inCopy = QDir::cleanPath(writeHostApplication(
            desk.folder.path(), u"Adobe InCopy"_s, u"15000"_s, u"Adobe InCopy"_s, u"InCp"_s));
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
