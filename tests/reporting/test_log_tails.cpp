// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Secrets.h"
#include "reporting/LogTails.h"
#include "support/Privileges.h"
#include "support/SampleBundles.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

class LogTailsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void tails_data();
    void tails();
    void aLogThatWasMovedAsideComesFirst();
    void whatIsNoLogIsSaidToBeNone();
    void hugeFilesAreReadAtTheirEnd();
    void theNewestCrashReportsAreTaken();
};

void LogTailsTest::tails_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");
    const QByteArray line = QByteArray(99, 'x') + '\n';
    QTest::newRow("empty") << QByteArray() << QString();
    QTest::newRow("exactly as much") << line.repeated(2560) << QString::fromLatin1(line.repeated(2560));
    // One byte too many: the first line is cut through and goes.
    QTest::newRow("one more") << 'a' + line.repeated(2560) << QString::fromLatin1(line.repeated(2559));
    // The first line that begins behind the 44000th byte.
    QTest::newRow("300000 bytes") << QByteArray(43990, 'a') + "\n0123456789abc\n" + QByteArray(255995, 'b')
                                  << QString(255995, u'b');
    QTest::newRow("no line break") << QByteArray(300000, 'a') << QString(256000, u'a');
    QTest::newRow("a character is cut through")
        << "a" + "ä"_ba.repeated(128000) + "b" << QString(127999, u'ä') + u'b';
    QTest::newRow("no UTF-8") << "a\xff\xfe\xc3(\n"_ba << u"a\ufffd\ufffd\ufffd(\n"_s;
    keepSecret(u"s3cret-id"_s);
    QTest::newRow("a session id, as an earlier version logged it")
        << "Cookie: SessionId=s3cret-id\n"_ba << u"Cookie: SessionId=(not logged)\n"_s;
    QTest::newRow("NUL") << QByteArray("a\0b", 3) << QString(u"a\0b"_s);
}

void LogTailsTest::tails()
{
    QFETCH(QByteArray, content);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"some.log"_s);
    QVERIFY(writeFile(path, content));
    QVERIFY(QFile::link(path, folder.filePath(u"link.log"_s)));
    QTEST(logTail(path), "expected");
    QTEST(logTail(folder.filePath(u"link.log"_s)), "expected");
}

void LogTailsTest::aLogThatWasMovedAsideComesFirst()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"some.log"_s);
    const QByteArray line = QByteArray(99, 'x') + '\n';
    QVERIFY(writeFile(path, "now\n"));
    QVERIFY(writeFile(path + u".1"_s, "before\n"));
    QCOMPARE(logTail(path), u"before\nnow\n"_s);
    // Together no more than of one file, and from a whole line on.
    QVERIFY(writeFile(path + u".1"_s, line.repeated(3000)));
    QCOMPARE(logTail(path), QString::fromLatin1(line.repeated(2559)) + u"now\n"_s);
    QVERIFY(writeFile(path, line.repeated(2560)));
    QCOMPARE(logTail(path), QString::fromLatin1(line.repeated(2560)));
}

void LogTailsTest::whatIsNoLogIsSaidToBeNone()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"a.log"_s);
    QList<ReportItem> items;
    addLogFile(path, items, u"name"_s);
    QCOMPARE(items, (QList<ReportItem>{{u"name"_s, u"File a.log doesn't exist."_s}}));
    QVERIFY(QFile::link(folder.filePath(u"nowhere"_s), folder.filePath(u"dangling"_s)));
    QCOMPARE(logTail(folder.filePath(u"dangling"_s)), u"File dangling doesn't exist."_s);
    QVERIFY(QDir(folder.path()).mkdir(u"folder"_s));
    QCOMPARE(logTail(folder.filePath(u"folder"_s)), u"Can't get handle for folder."_s);
    QCOMPARE(::mkfifo(QFile::encodeName(folder.filePath(u"pipe"_s)).constData(), 0600), 0);
    QCOMPARE(logTail(folder.filePath(u"pipe"_s)), u"Can't get handle for pipe."_s);
    QVERIFY(writeFile(path, "x"));
    QVERIFY(QFile::setPermissions(path, {}));
    const WithoutPrivileges user;
    QCOMPARE(logTail(path), u"Can't get handle for a.log."_s);
}

void LogTailsTest::hugeFilesAreReadAtTheirEnd()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"huge.log"_s));
    QVERIFY(file.open(QIODevice::ReadWrite));
    const qint64 size = 2LL * 1024 * 1024 * 1024;
    QVERIFY(file.resize(size)); // takes no room
    QVERIFY(file.seek(size - 10) && file.write("\nlast line") == 10);
    file.close();
    QCOMPARE(logTail(file.fileName()), u"last line"_s);
}

void LogTailsTest::theNewestCrashReportsAreTaken()
{
    const QTemporaryDir folder;
    QList<ReportItem> items;
    addCrashReports(folder.path(), items);
    QVERIFY(items.isEmpty());

    const QDateTime now = QDateTime::currentDateTime();
    const auto add = [&](const QString &name, int age) {
        QFile file(folder.filePath(u"DiagnosticReports/"_s + name));
        QVERIFY(writeFile(file.fileName(), name.toUtf8()));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(now.addSecs(-age), QFileDevice::FileModificationTime));
    };
    for (int i = 0; i < 3000; ++i) {
        add(u"Adobe InDesign %1.crash"_s.arg(i), i == 1234 ? 50 : 100 + i);
    }
    add(u"Adobe InDesign newer.txt"_s, 10);
    add(u"Adobe InCopy.crash"_s, 10);
    add(u"Tolvane Brevok.crash"_s, 10);
    addCrashReports(folder.path(), items);
    QCOMPARE(items, (QList<ReportItem>{{u"InDesign.crash"_s, u"Adobe InDesign 1234.crash"_s}}));

    add(u"Tolvane Brevok_1.crash"_s, 30);
    add(u"Tolvane Brevok_2.crash"_s, 20);
    QVERIFY(QDir().mkdir(folder.filePath(u"DiagnosticReports/Adobe InDesign folder.crash"_s)));
    items.clear();
    addCrashReports(folder.path(), items);
    QCOMPARE(items,
        (QList<ReportItem>{{u"InDesign.crash"_s, u"Can't get handle for Adobe InDesign folder.crash."_s},
            {u"Tolvane Brevok.crash"_s, u"Tolvane Brevok_2.crash"_s}}));
}

QTEST_GUILESS_MAIN(LogTailsTest)
#include "test_log_tails.moc"
