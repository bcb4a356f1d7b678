// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "PreferencesDesk.h"
#include "support/SampleBundles.h"

#include <QComboBox>
#include <QLabel>
#include <QRegularExpression>

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
    void tableIsUsedByKeyboard();
    void validFolderIsAdded();
    void otherFolderIsAskedFor_data();
    void otherFolderIsAskedFor();
    void wrongFolderIsRefused();
    void oneFolderIsAddedOnce();
};

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
    QVERIFY(desk.table()->columnWidth(1) >= desk.table()->fontMetrics().horizontalAdvance(label));
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
    const QString path =
        QDir::cleanPath(writeHostApplication(desk.folder.path(), u"Adobe InDesign CS5.5"_s, u"7536"_s));
    desk.openSheet();
    auto *sheet = desk.find<QDialog>("targetDataSheet");
    QVERIFY(sheet->isVisible());
    QVERIFY(!desk.find<QPushButton>("addTarget")->isEnabled());
    desk.choose(path);
    QCOMPARE(desk.find<QComboBox>("targetPath")->currentText(), path);
    desk.find<QComboBox>("targetApp")->setCurrentIndex(1);
    desk.find<QComboBox>("targetVer")->setCurrentIndex(3);
    desk.click("addTarget");
    QTRY_VERIFY(!sheet->isVisible());
    const Record record = desk.targets->targets().value(path);
    QCOMPARE(record.value(TargetKeys::type).toString(), u"InCopy"_s);
    QCOMPARE(record.value(TargetKeys::version).toString(), u"75"_s);
    QVERIFY(desk.presenter.sheets.isEmpty());

    // Each sheet starts afresh, and Escape adds nothing.
    desk.click("insertButton");
    QVERIFY(!desk.find<QPushButton>("addTarget")->isEnabled());
    QTest::keyClick(sheet, Qt::Key_Escape);
    QVERIFY(!sheet->isVisible());
    QCOMPARE(desk.rows().size(), 1);
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
    QCOMPARE(desk.find<QDialog>("targetDataSheet")->isVisible(), !added);
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
    QVERIFY(desk.find<QDialog>("targetDataSheet")->isVisible());
    QString told = desk.find<QLabel>("sheetStatus")->text();
    told.remove(QChar(0x200b)); // where a long path may be broken
    QCOMPARE(told, u"There is no folder '%1'."_s.arg(path));
    // Another choice is judged anew.
    desk.choose(desk.folder.path());
    QVERIFY(desk.find<QLabel>("sheetStatus")->text().isEmpty());
}

void PreferencesTargetsTest::oneFolderIsAddedOnce()
{
    Desk desk;
    const QString path = writeHostApplication(desk.folder.path(), u"Adobe InDesign CS5.5"_s, u"7536"_s);
    QVERIFY(QFile::link(path, desk.folder.filePath(u"Plug-Ins"_s)));
    desk.targets->insertTarget(path, u"Adobe InDesign"_s, u"75"_s);
    desk.openSheet();
    desk.choose(desk.folder.filePath(u"Plug-Ins"_s));
    desk.click("addTarget");
    QTRY_VERIFY(!desk.find<QDialog>("targetDataSheet")->isVisible());
    QCOMPARE(desk.targets->allRecords().keys(), QStringList{path});
    QCOMPARE(desk.targets->targets().value(path).value(TargetKeys::version).toString(), u"190"_s);
}

QTEST_MAIN(PreferencesTargetsTest)
#include "test_preferences_targets.moc"
