// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/session/AutostartLoginItems.h"
#include "support/Folders.h"
#include "support/FolderTest.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"

#include <QDir>
#include <QTest>

#include <cerrno>

#include <sys/stat.h>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::contentsOf;
using testing::LogCapture;
using testing::writeFile;

class LoginItemsTest : public testing::FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void loginItemsAreDesktopEntries_data();
    void loginItemsAreDesktopEntries();
    void whatIsNoLoginItemCountsAsAbsent_data();
    void whatIsNoLoginItemCountsAsAbsent();
    void loginItemsFailWithOneLine_data();
    void loginItemsFailWithOneLine();
};

void LoginItemsTest::loginItemsAreDesktopEntries_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("plain") << u"/usr/bin/tolvane-brevok"_s
                           << "Exec=\"/usr/bin/tolvane-brevok\" --background\n"_ba;
    QTest::newRow("odd") << u"/opt/a b/\"$`\\%f ü"_s
                         << "Exec=\"/opt/a b/\\\\\"\\\\$\\\\`\\\\\\\\%%f \xc3\xbc\" --background\n"_ba;
    QTest::newRow("line break") << u"/opt/a\nHidden=true"_s
                                << "Exec=\"/opt/a\\nHidden=true\" --background\n"_ba;
}

void LoginItemsTest::loginItemsAreDesktopEntries()
{
    QFETCH(QString, program);
    QFETCH(QByteArray, line);
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

void LoginItemsTest::whatIsNoLoginItemCountsAsAbsent_data()
{
    QTest::addColumn<QByteArray>("contents");
    const QByteArray url = "X-Tolvane-Application-URL=file:///usr/bin/tolvane-brevok\n";
    QTest::newRow("switched off") << "[Desktop Entry]\n" + url + "Hidden=true\n";
    QTest::newRow("switched off in GNOME") << "[Desktop Entry]\n" + url + "X-GNOME-Autostart-enabled=false\n";
    QTest::newRow("other group") << "[Other]\n" + url;
    QTest::newRow("comment") << "[Desktop Entry]\n#" + url;
    QTest::newRow("garbage") << QByteArray(3000, '\xfe') + url;
    QTest::newRow("huge") << "[Desktop Entry]\n" + url + QByteArray(100'000, '\n');
    QTest::newRow("fifo") << "fifo"_ba;
}

void LoginItemsTest::whatIsNoLoginItemCountsAsAbsent()
{
    QFETCH(QByteArray, contents);
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

void LoginItemsTest::loginItemsFailWithOneLine_data()
{
    QTest::addColumn<QString>("folder");

    QTest::newRow("a file in the folder's place") << u"file"_s;
    QTest::newRow("a folder that cannot be made") << u"/sys/tolvane-brevok"_s;
}

void LoginItemsTest::loginItemsFailWithOneLine()
{
    QFETCH(const QString, folder);
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

QTEST_GUILESS_MAIN(LoginItemsTest)
#include "test_login_items.moc"
