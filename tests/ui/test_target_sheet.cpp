// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "PreferencesDesk.h"
#include "support/InRow.h"
#include "WindowTest.h"

#include <QComboBox>
#include <QLabel>

using namespace brevok;
using namespace brevok::testing;

class TargetSheetTest : public WindowTest {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    void validFolderIsAdded()
    {
        Desk desk;
        for (int number = 0; number < 40; ++number) {
            desk.addTargets({u"/%1"_s.arg(number)});
        }
        const QString path = desk.makeHost(u"Adobe InDesign CS5.5"_s, u"7536"_s);
        desk.openSheet();
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
        const QRect row = desk.table()->visualRect(desk.table()->currentIndex());
        QVERIFY(desk.table()->viewport()->rect().contains(row));
        QCOMPARE(desk.window->focusWidget(), desk.table());
        // Each sheet starts afresh.
        QTRY_VERIFY(desk.find<QDialog>("targetDataSheet") == nullptr);
        desk.click("insertButton");
        QVERIFY(!desk.find<QPushButton>("addTarget")->isEnabled());
    }

    void hostBesideTheFolderIsRead()
    {
        const QList<std::tuple<const char *, QString, QString, QString, QString>> rows{
            {"cloud", u"14012"_s, u"InDn"_s, u"InDesign"_s, u"CC 2019"_s},
            {"between two names", u"16400"_s, u"InDn"_s, u"InDesign"_s, u"CC 2021"_s},
            {"the other host", u"15000"_s, u"InCp"_s, u"InCopy"_s, u"CC 2020"_s},
            {"newer than all names", u"20100"_s, u"InDn"_s, u"InDesign"_s, u"CC [200]"_s},
            {"dotted", u"15.0.2"_s, u"InDn"_s, u"InDesign"_s, {}},
            {"no host", u"14012"_s, u"other"_s, u"InDesign"_s, {}},
        };
        for (const auto &[row, version, signature, application, name] : rows) {
            const InRow in(row);
            Desk desk;
            desk.openSheet();
            desk.choose(desk.makeHost(u"Host"_s, version, signature));
            QCOMPARE(desk.find<QComboBox>("targetApp")->currentText(), application);
            QCOMPARE(desk.find<QComboBox>("targetVer")->currentText(), name.isEmpty() ? u"CC 2024"_s : name);
            const auto *status = desk.find<QLabel>("sheetStatus");
            QCOMPARE(status->text().isEmpty(), !name.isEmpty());
            for (const QLabel *label : QList<const QLabel *>{status, desk.find<QLabel>("sheetHint")}) {
                QVERIFY(label->height() >= label->heightForWidth(label->width())); // the sheet grew for it
            }
        }
    }

    void chooserStartsNearHosts()
    {
        Desk desk;
        const QString searched = desk.folder.filePath(u"searched"_s);
        const QString host = QDir::cleanPath(writeHostApplication(searched, u"Host"_s, u"14012"_s));
        desk.search.searched = {u"/nowhere"_s, searched};
        const auto startsAt = [&desk](const QString &folder) {
            desk.click("choosePath");
            QTRY_VERIFY(desk.chooser() != nullptr);
            const QPointer<QFileDialog> chooser = desk.chooser();
            QCOMPARE(chooser->directory().path(), folder);
            chooser->reject();
            QTRY_VERIFY(chooser.isNull());
        };
        desk.openSheet();
        startsAt(searched);
        desk.choose(host);
        startsAt(host); // at the folder that is chosen
        desk.choose(host);
        desk.click("cancelTarget");
        QTRY_VERIFY(desk.find<QDialog>("targetDataSheet") == nullptr);
        desk.click("insertButton");
        startsAt(host); // where the last one was
    }

    void otherFolderIsAskedFor()
    {
        const QList<std::tuple<const char *, QString, int, bool>> rows{
            {"wrong name, OK", u"plug-ins"_s, 1000, true},
            {"nothing beside, default button of its own", u"Plug-Ins"_s, 1, true},
            {"Cancel", u"Plug-Ins"_s, 1001, false},
            {"an older system's answer", u"Plug-Ins"_s, -1002, false},
        };
        for (const auto &[row, name, response, added] : rows) {
            const InRow in(row);
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
            QCOMPARE(desk.targets->targets().contains(path), added);
            QCOMPARE(desk.sheet() == nullptr, added);
        }
    }

    void wrongFolderIsRefused()
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
        desk.choose(desk.makeHost(u"Host"_s, u"14012"_s));
        QVERIFY(desk.find<QLabel>("sheetStatus")->text().isEmpty());
    }

    void oneFolderIsAddedOnce()
    {
        Desk desk;
        const QString path = desk.makeHost(u"Adobe InDesign CC 2019"_s, u"14012"_s);
        const QString link = desk.folder.filePath(u"Adobe InDesign CC 2019/Elsewhere/Plug-Ins"_s);
        QVERIFY(QDir().mkpath(QFileInfo(link).path()) && QFile::link(path, link));
        desk.addTargets({u"/Z"_s, path});
        desk.openTargets();
        // As the host says it is, and over the warning that no host stands beside the link.
        const auto add = [&desk](const QString &folder, std::optional<int> version = {}) {
            desk.click("insertButton");
            desk.choose(folder);
            const int read = desk.find<QComboBox>("targetVer")->findText(u"CC 2019"_s);
            desk.find<QComboBox>("targetVer")->setCurrentIndex(version.value_or(read));
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
            add(spelling);
            QCOMPARE(desk.targets->allRecords().size(), 2);
            QCOMPARE(selectedPaths(desk), QStringList{path});
            QCOMPARE(shownNotice(desk), u"'%1' is already in the list."_s.arg(spelling));
            const Record record = desk.targets->targets().value(path);
            QCOMPARE(record.value(TargetKeys::type).toString(), u"Adobe InDesign"_s);
        }
        // Who adds what is switched off wants it on.
        desk.targets->setTarget(path, false);
        add(link);
        QVERIFY(desk.targets->targetState(path) && shownNotice(desk).isEmpty());
        // Another version is a correction.
        add(path, 4);
        QCOMPARE(desk.targets->targets().value(path).value(TargetKeys::version).toString(), u"80"_s);
        QVERIFY(desk.targets->allRecords().size() == 2 && shownNotice(desk).isEmpty());
    }
};

QTEST_MAIN(TargetSheetTest)
#include "test_target_sheet.moc"
