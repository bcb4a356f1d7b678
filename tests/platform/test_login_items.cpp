// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/session/AutostartLoginItems.h"
#include "support/Folders.h"
#include "support/FolderTest.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"
#include "support/Table.h"

#include <QDir>
#include <QTest>

#include <cerrno>

#include <sys/stat.h>

using namespace brevok;
using namespace Qt::StringLiterals;
using namespace brevok::testing;

class LoginItemsTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void loginItemsAreDesktopEntries_data()
    {
        const Table<QString, QByteArray> row;
        row("plain", u"/usr/bin/tolvane-brevok"_s, "Exec=\"/usr/bin/tolvane-brevok\" --background\n"_ba);
        row("odd", u"/opt/a b/\"$`\\%f ü"_s,
            "Exec=\"/opt/a b/\\\\\"\\\\$\\\\`\\\\\\\\%%f \xc3\xbc\" --background\n"_ba);
        row("line break", u"/opt/a\nHidden=true"_s, "Exec=\"/opt/a\\nHidden=true\" --background\n"_ba);
    }

    void loginItemsAreDesktopEntries()
    {
        const auto [program, line] = columns<QString, QByteArray>();
        const QString file = path(u"autostart/com.tolvane.brevok.desktop"_s);
        const QUrl application = QUrl::fromLocalFile(program);
        AutostartLoginItems items(file, u"Tolvane Brevok"_s);
        QVERIFY(!items.contains(application));
        items.set(application, true, {});
        items.set(application, true, {});
        QVERIFY(items.contains(application)); // at once, though it is written later
        QVERIFY(!items.contains(QUrl::fromLocalFile(program + u'2')));
        QTRY_VERIFY(contentsOf(file).contains(line));
        QVERIFY(contentsOf(file).startsWith("[Desktop Entry]\nType=Application\n"));
        items.set(QUrl::fromLocalFile(u"/elsewhere"_s), false, {});
        QVERIFY(QFileInfo::exists(file));
        items.set(application, false, {});
        QVERIFY(!items.contains(application));
        QTRY_VERIFY(!QFileInfo::exists(file));
        items.set(application, false, {});
        QCOMPARE(QDir(path(u"autostart"_s)).entryList(QDir::Files | QDir::Hidden), QStringList());
    }

    void whatIsNoLoginItemCountsAsAbsent_data()
    {
        const Table<QByteArray> row;
        const QByteArray url = "X-Tolvane-Application-URL=file:///usr/bin/tolvane-brevok\n";
        row("switched off", "[Desktop Entry]\n" + url + "Hidden=true\n");
        row("switched off in GNOME", "[Desktop Entry]\n" + url + "X-GNOME-Autostart-enabled=false\n");
        row("other group", "[Other]\n" + url);
        row("comment", "[Desktop Entry]\n#" + url);
        row("garbage", QByteArray(3000, '\xfe') + url);
        row("huge", "[Desktop Entry]\n" + url + QByteArray(100'000, '\n'));
        row("fifo", "fifo"_ba);
    }

    void whatIsNoLoginItemCountsAsAbsent()
    {
        const auto [contents] = columns<QByteArray>();
        const QString file = path(u"com.tolvane.brevok.desktop"_s);
        if (contents == "fifo") {
            QCOMPARE(::mkfifo(QFile::encodeName(file).constData(), 0600), 0);
        } else {
            QVERIFY(writeFile(file, contents));
        }
        const QUrl application = QUrl::fromLocalFile(u"/usr/bin/tolvane-brevok"_s);
        AutostartLoginItems items(file, u"Tolvane Brevok"_s);
        QVERIFY(!items.contains(application));
        items.set(application, true, {});
        QTRY_COMPARE(
            QFileInfo(file).isFile() ? AutostartLoginItems(file, {}).contains(application) : false, true);
    }

    void loginItemsFailWithOneLine_data()
    {
        const Table<QString> row;
        row("a file in the folder's place", u"file"_s);
        row("a folder that cannot be made", u"/sys/tolvane-brevok"_s);
    }

    void loginItemsFailWithOneLine()
    {
        const auto [folder] = columns<QString>();
        QVERIFY(writeFile(path(u"file"_s), "x"));
        const LogCapture log;
        AutostartLoginItems items(
            QDir(path()).absoluteFilePath(folder + u"/com.tolvane.brevok.desktop"_s), u"Tolvane Brevok"_s);
        const QUrl application = QUrl::fromLocalFile(u"/usr/bin/tolvane-brevok"_s);
        // What failed is told to the one who wanted it, before and after others whose changes did not.
        QStringList told;
        const auto hear = [&told](const auto &error) {
            told.append(error ? error->description : QString());
        };
        items.set(application, false, {this, hear});
        items.set(application, true, {});
        items.set(application, false, {this, hear});
        items.set(application, true, {this, hear});
        items.set(application, false, {this, hear});
        QTRY_COMPARE(told.size(), 4);
        const QString problem = told.takeAt(2);
        QCOMPARE(told, QStringList(3, QString()));
        QVERIFY(problem.startsWith(u"The login item cannot be written to "_s));
        QVERIFY2(!problem.contains(qt_error_string(ENOENT)), "that the folder is missing is not the reason");
        QCOMPARE(log.lines(), QStringList(2, log.lines().constFirst()));
        QVERIFY(log.mentions(problem));
    }
};

QTEST_GUILESS_MAIN(LoginItemsTest)
#include "test_login_items.moc"
