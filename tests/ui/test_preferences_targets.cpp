// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "PreferencesDesk.h"
#include "support/SampleBundles.h"
#include "ui/preferences/TargetRowDelegate.h"

#include <QComboBox>
#include <QDropEvent>
#include <QFontMetrics>
#include <QLabel>
#include <QMimeData>
#include <QRegularExpression>
#include <QScrollBar>

using namespace brevok;
using namespace brevok::testing;

class PreferencesTargetsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // All but what the windowless platform says of itself.
        QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
    }
    void initTestCase() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    void tableFollowsTheTargets();
    void namesAreSeenAtTheFirstWidth();
    void tableIsUsedByKeyboard();
    void validFolderIsAdded();
    void hostBesideTheFolderIsRead_data();
    void hostBesideTheFolderIsRead();
    void chooserStartsNearHosts();
    void otherFolderIsAskedFor_data();
    void otherFolderIsAskedFor();
    void wrongFolderIsRefused();
    void oneFolderIsAddedOnce();
    void removedTargetsComeBack();
    void foldersAreDropped();
    void dropOfOtherFoldersIsAskedFor();
};

namespace {

QString shownNotice(const Desk &desk)
{
    QString told = desk.find<QLabel>("targetsNotice")->text();
    return told.remove(QChar(0x200b)); // where a long path may be broken
}

QStringList selectedPaths(const Desk &desk)
{
    QStringList labels;
    const QModelIndexList rows = desk.table()->selectionModel()->selectedRows(1);
    for (const QModelIndex &row : rows) {
        labels.append(row.data().toString().section(u" ["_s, 0, 0));
    }
    return labels;
}

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

void PreferencesTargetsTest::tableFollowsTheTargets()
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

void PreferencesTargetsTest::namesAreSeenAtTheFirstWidth()
{
    Desk desk;
    const QString deep = u"/home/ada/"_s + QString(4000, u'W') + u"/Adobe InDesign CC 2019/Plug-Ins/"_s;
    const QString rightToLeft = u"/home/\u05e2\u05d3\u05d4/"_s + QString(200, QChar(0x5d0)) + u"/Plug-Ins"_s;
    desk.targets->insertTarget(deep, u"Adobe InDesign"_s, u"140"_s);
    desk.targets->insertTarget(rightToLeft, QString(300, u'N'), u"150"_s);
    desk.targets->insertTarget(u"/A/Plug-Ins"_s, u"Adobe InDesign"_s, u"160"_s);
    desk.openTargets();
    QTableView *table = desk.table();
    QVERIFY(!table->horizontalScrollBar()->isVisible());
    QCOMPARE(table->columnWidth(0) + table->columnWidth(1), table->viewport()->width());
    QVERIFY(
        desk.rows().at(2).endsWith(u"/Plug-Ins/ [Adobe InDesign CC 2019]"_s)); // as screen readers have it

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

void PreferencesTargetsTest::tableIsUsedByKeyboard()
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
}

void PreferencesTargetsTest::validFolderIsAdded()
{
    Desk desk;
    for (int number = 0; number < 40; ++number) {
        desk.targets->insertTarget(u"/%1"_s.arg(number), u"InDesign"_s, u"140"_s);
    }
    const QString path =
        QDir::cleanPath(writeHostApplication(desk.folder.path(), u"Adobe InDesign CS5.5"_s, u"7536"_s));
    desk.openSheet();
    QVERIFY(desk.sheet() != nullptr);
    QVERIFY(!desk.find<QPushButton>("addTarget")->isEnabled());
    desk.choose(path);
    QCOMPARE(desk.find<QComboBox>("targetVer")->currentText(), u"CS5.5"_s);
    // By hand it can be said otherwise.
    desk.find<QComboBox>("targetApp")->setCurrentIndex(1);
    desk.find<QComboBox>("targetVer")->setCurrentIndex(4);
    desk.click("addTarget");
    QTRY_VERIFY(desk.sheet() == nullptr);
    const Record record = desk.targets->targets().value(path);
    QCOMPARE(record.value(TargetKeys::type).toString(), u"InCopy"_s);
    QCOMPARE(record.value(TargetKeys::version).toString(), u"80"_s);
    QVERIFY(desk.presenter.sheets.isEmpty());
    QCOMPARE(selectedPaths(desk), QStringList{path});
    const QModelIndex row = desk.table()->currentIndex();
    QVERIFY(desk.table()->viewport()->rect().contains(desk.table()->visualRect(row)));
    QCOMPARE(desk.window->focusWidget(), desk.table());

    // Each sheet starts afresh, and Escape adds nothing.
    QTRY_VERIFY(desk.find<QDialog>("targetDataSheet") == nullptr);
    desk.click("insertButton");
    QVERIFY(!desk.find<QPushButton>("addTarget")->isEnabled());
    QTest::keyClick(desk.sheet(), Qt::Key_Escape);
    QVERIFY(desk.sheet() == nullptr);
    QCOMPARE(desk.rows().size(), 41);
}

void PreferencesTargetsTest::hostBesideTheFolderIsRead_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<QString>("signature");
    QTest::addColumn<QString>("application");
    QTest::addColumn<QString>("name");
    QTest::newRow("suite") << u"7536"_s << u"InDn"_s << u"InDesign"_s << u"CS5.5"_s;
    QTest::newRow("cloud") << u"14012"_s << u"InDn"_s << u"InDesign"_s << u"CC 2019"_s;
    QTest::newRow("between two names") << u"16400"_s << u"InDn"_s << u"InDesign"_s << u"CC 2021"_s;
    QTest::newRow("the other host") << u"15000"_s << u"InCp"_s << u"InCopy"_s << u"CC 2020"_s;
    QTest::newRow("newer than all names") << u"20100"_s << u"InDn"_s << u"InDesign"_s << u"CC [200]"_s;
    QTest::newRow("dotted") << u"15.0.2"_s << u"InDn"_s << u"InDesign"_s << QString();
    QTest::newRow("no host") << u"14012"_s << u"other"_s << u"InDesign"_s << QString();
}

void PreferencesTargetsTest::hostBesideTheFolderIsRead()
{
    QFETCH(QString, version);
    QFETCH(QString, signature);
    Desk desk;
    const QString path = writeHostApplication(desk.folder.path(), u"Host"_s, version, u"Host"_s, signature);
    desk.openSheet();
    desk.choose(path);
    QFETCH(QString, name);
    QTEST(desk.find<QComboBox>("targetApp")->currentText(), "application");
    QCOMPARE(desk.find<QComboBox>("targetVer")->currentText(), name.isEmpty() ? u"CC 2024"_s : name);
    const auto *status = desk.find<QLabel>("sheetStatus");
    QCOMPARE(status->text().isEmpty(), !name.isEmpty());
    for (const QLabel *label : QList<const QLabel *>{status, desk.find<QLabel>("sheetHint")}) {
        QVERIFY(label->height() >= label->heightForWidth(label->width())); // the sheet grew for it
    }
}

void PreferencesTargetsTest::chooserStartsNearHosts()
{
    Desk desk;
    const QString searched = desk.folder.filePath(u"searched"_s);
    const QString other = desk.folder.filePath(u"other"_s);
    const QString path = writeHostApplication(searched, u"Host"_s, u"14012"_s);
    QVERIFY(QDir().mkpath(other + u"/Plug-Ins"_s));
    desk.search.searched = {u"/nowhere"_s, searched};
    const auto startOf = [&desk] {
        QFileDialog *chooser = desk.chooser();
        const QString folder = chooser->directory().path();
        chooser->reject();
        return folder;
    };
    desk.openSheet();
    desk.click("choosePath");
    QTRY_VERIFY(desk.chooser() != nullptr);
    QCOMPARE(startOf(), searched);
    QTRY_VERIFY(desk.chooser() == nullptr);
    desk.choose(other + u"/Plug-Ins"_s);
    desk.click("cancelTarget");
    QTRY_VERIFY(desk.find<QDialog>("targetDataSheet") == nullptr);
    // Where the last one was.
    desk.click("insertButton");
    desk.click("choosePath");
    QTRY_VERIFY(desk.chooser() != nullptr);
    QCOMPARE(startOf(), searched); // which the chooser showed
    QTRY_VERIFY(desk.chooser() == nullptr);
    // Of a folder that is chosen, there.
    desk.choose(path);
    desk.click("choosePath");
    QTRY_VERIFY(desk.chooser() != nullptr);
    QCOMPARE(startOf() + u'/', path);
}

void PreferencesTargetsTest::otherFolderIsAskedFor_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("response");
    QTest::addColumn<bool>("added");
    QTest::newRow("wrong name, OK") << u"plug-ins"_s << 1000 << true;
    QTest::newRow("default button of its own") << u"plug-ins"_s << 1 << true;
    QTest::newRow("nothing beside, OK") << u"Plug-Ins"_s << 1000 << true;
    QTest::newRow("Cancel") << u"Plug-Ins"_s << 1001 << false;
    QTest::newRow("an older system's answer") << u"Plug-Ins"_s << -1002 << false;
}

void PreferencesTargetsTest::otherFolderIsAskedFor()
{
    QFETCH(QString, name);
    QFETCH(int, response);
    Desk desk;
    const QString path = desk.folder.filePath(name);
    QVERIFY(QDir().mkpath(path));
    desk.openSheet();
    desk.choose(path);
    desk.click("addTarget");
    QTRY_COMPARE(desk.presenter.sheets.size(), 1);
    const AlertContent &alert = desk.presenter.sheets.first();
    QCOMPARE(alert.style, AlertStyle::Critical);
    QCOMPARE(alert.messageText.value_or(QString()), u"Invalid Plug-Ins path selected!"_s);
    QCOMPARE(alert.buttons.value(1).title, u"Cancel"_s);
    QVERIFY(desk.targets->targets().isEmpty());
    desk.presenter.completions.takeFirst()(response);
    QFETCH(bool, added);
    QCOMPARE(desk.targets->targets().contains(path), added);
    QCOMPARE(desk.sheet() == nullptr, added);
}

void PreferencesTargetsTest::wrongFolderIsRefused()
{
    Desk desk;
    const QString path = desk.folder.filePath(u"gone/Plug-Ins"_s);
    QVERIFY(QDir().mkpath(path));
    desk.openSheet();
    desk.choose(path);
    QVERIFY(QDir(path).removeRecursively());
    desk.click("addTarget");
    QTRY_COMPARE(desk.presenter.sheets.size(), 1);
    desk.presenter.completions.takeFirst()(alertFirstButton);
    QVERIFY(desk.targets->allRecords().isEmpty());
    QVERIFY(desk.sheet() != nullptr);
    QString told = desk.find<QLabel>("sheetStatus")->text();
    told.remove(QChar(0x200b)); // where a long path may be broken
    QCOMPARE(told, u"There is no folder '%1'."_s.arg(path));
    // Another choice is judged anew.
    desk.choose(writeHostApplication(desk.folder.path(), u"Host"_s, u"14012"_s));
    QVERIFY(desk.find<QLabel>("sheetStatus")->text().isEmpty());
}

void PreferencesTargetsTest::oneFolderIsAddedOnce()
{
    Desk desk;
    const QString path =
        QDir::cleanPath(writeHostApplication(desk.folder.path(), u"Adobe InDesign CS5.5"_s, u"7536"_s));
    const QString link = desk.folder.filePath(u"Adobe InDesign CS5.5/Elsewhere/Plug-Ins"_s);
    QVERIFY(QDir().mkpath(QFileInfo(link).path()) && QFile::link(path, link));
    desk.targets->insertTarget(u"/Z"_s, u"Adobe InDesign"_s, u"75"_s);
    desk.targets->insertTarget(path, u"Adobe InDesign"_s, u"75"_s);
    desk.targets->setTarget(path, false);
    desk.openTargets();
    const auto add = [&desk](const QString &folder, int version) {
        desk.click("insertButton");
        desk.choose(folder);
        desk.find<QComboBox>("targetVer")->setCurrentIndex(version);
        desk.click("addTarget");
        QTRY_VERIFY(!desk.presenter.completions.isEmpty() || desk.sheet() == nullptr);
        while (!desk.presenter.completions.isEmpty()) {
            desk.presenter.completions.takeFirst()(alertFirstButton);
        }
        QTRY_VERIFY(desk.find<QDialog>("targetDataSheet") == nullptr);
    };
    // The same in another spelling: the row is shown as it is.
    for (const QString &spelling : {path, link}) {
        desk.table()->clearSelection();
        add(spelling, 3);
        QCOMPARE(desk.targets->allRecords().size(), 2);
        QCOMPARE(selectedPaths(desk), QStringList{path});
        QCOMPARE(shownNotice(desk), u"'%1' is already in the list."_s.arg(spelling));
        const Record record = desk.targets->targets().value(path);
        QCOMPARE(record.value(TargetKeys::type).toString(), u"Adobe InDesign"_s);
        QVERIFY(!desk.targets->targetState(path));
    }
    // Another version is a correction.
    add(path, 4);
    QCOMPARE(desk.targets->targets().value(path).value(TargetKeys::version).toString(), u"80"_s);
    QCOMPARE(desk.targets->allRecords().size(), 2);
    QVERIFY(shownNotice(desk).isEmpty());
}

void PreferencesTargetsTest::removedTargetsComeBack()
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

void PreferencesTargetsTest::foldersAreDropped()
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
    QTRY_COMPARE(shownNotice(desk), u"'%1' is already in the list. (and 2 more)"_s.arg(first));
    QCOMPARE(desk.targets->allRecords().size(), 2);
}

void PreferencesTargetsTest::dropOfOtherFoldersIsAskedFor()
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

QTEST_MAIN(PreferencesTargetsTest)
#include "test_preferences_targets.moc"
