// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Secrets.h"
#include "reporting/LogTails.h"
#include "support/FolderTest.h"
#include "support/InRow.h"
#include "support/Privileges.h"
#include "support/SampleBundles.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

class LogTailsTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void tails()
    {
        const QByteArray line = QByteArray(99, 'x') + '\n';
        keepSecret(u"s3cret-id"_s);
        const QList<std::tuple<const char *, QByteArray, QString>> rows{
            {"empty", {}, {}},
            {"exactly as much", line.repeated(2560), QString::fromLatin1(line.repeated(2560))},
            // One byte too many: the first line is cut through and goes.
            {"one more", 'a' + line.repeated(2560), QString::fromLatin1(line.repeated(2559))},
            // The first line that begins behind the 44000th byte.
            {"300000 bytes", QByteArray(43990, 'a') + "\n0123456789abc\n" + QByteArray(255995, 'b'),
                QString(255995, u'b')},
            {"no line break", QByteArray(300000, 'a'), QString(256000, u'a')},
            {"a character is cut through", "a" + "ä"_ba.repeated(128000) + "b", QString(127999, u'ä') + u'b'},
            {"a session id, as an earlier version logged it", "Cookie: SessionId=s3cret-id\n"_ba,
                u"Cookie: SessionId=(not logged)\n"_s},
        };
        for (const auto &[name, content, expected] : rows) {
            const InRow in(name);
            const QTemporaryDir folder;
            const QString log = folder.filePath(u"some.log"_s);
            QVERIFY(writeFile(log, content));
            QVERIFY(QFile::link(log, folder.filePath(u"link.log"_s)));
            QCOMPARE(logTail(log), expected);
            QCOMPARE(logTail(folder.filePath(u"link.log"_s)), expected);
        }
    }

    void aLogThatWasMovedAsideComesFirst()
    {
        const QString log = path(u"some.log"_s);
        const QByteArray line = QByteArray(99, 'x') + '\n';
        QVERIFY(writeFile(log, "now\n"));
        QVERIFY(writeFile(log + u".1"_s, "before\n"));
        QCOMPARE(logTail(log), u"before\nnow\n"_s);
        // Together no more than of one file, and from a whole line on.
        QVERIFY(writeFile(log + u".1"_s, line.repeated(3000)));
        QCOMPARE(logTail(log), QString::fromLatin1(line.repeated(2559)) + u"now\n"_s);
        QVERIFY(writeFile(log, line.repeated(2560)));
        QCOMPARE(logTail(log), QString::fromLatin1(line.repeated(2560)));
    }

    void whatIsNoLogIsSaidToBeNone()
    {
        const QString log = path(u"a.log"_s);
        QList<ReportItem> items;
        addLogFile(log, items, u"name"_s);
        QCOMPARE(items, (QList<ReportItem>{{u"name"_s, u"File a.log doesn't exist."_s}}));
        QVERIFY(QFile::link(path(u"nowhere"_s), path(u"dangling"_s)));
        QCOMPARE(logTail(path(u"dangling"_s)), u"File dangling doesn't exist."_s);
        QVERIFY(QDir(path()).mkdir(u"folder"_s));
        QCOMPARE(logTail(path(u"folder"_s)), u"Can't get handle for folder."_s);
        QCOMPARE(::mkfifo(QFile::encodeName(path(u"pipe"_s)).constData(), 0600), 0);
        QCOMPARE(logTail(path(u"pipe"_s)), u"Can't get handle for pipe."_s);
        QVERIFY(writeFile(log, "x"));
        QVERIFY(QFile::setPermissions(log, {}));
        const WithoutPrivileges user;
        QCOMPARE(logTail(log), u"Can't get handle for a.log."_s);
    }

    void theNewestCrashReportsAreTaken()
    {
        QList<ReportItem> items;
        addCrashReports(path(), items);
        QVERIFY(items.isEmpty());

        const QDateTime now = QDateTime::currentDateTime();
        const auto add = [&](const QString &name, int age) {
            QFile file(path(u"DiagnosticReports/"_s + name));
            QVERIFY(writeFile(file.fileName(), name.toUtf8()));
            QVERIFY(file.open(QIODevice::ReadWrite));
            QVERIFY(file.setFileTime(now.addSecs(-age), QFileDevice::FileModificationTime));
        };
        for (int i = 0; i < 300; ++i) {
            add(u"Adobe InDesign %1.crash"_s.arg(i), i == 123 ? 50 : 100 + i);
        }
        add(u"Adobe InDesign newer.txt"_s, 10);
        add(u"Adobe InCopy.crash"_s, 10);
        add(u"Tolvane Brevok.crash"_s, 10);
        addCrashReports(path(), items);
        QCOMPARE(items, (QList<ReportItem>{{u"InDesign.crash"_s, u"Adobe InDesign 123.crash"_s}}));

        add(u"Tolvane Brevok_1.crash"_s, 30);
        add(u"Tolvane Brevok_2.crash"_s, 20);
        QVERIFY(QDir().mkdir(path(u"DiagnosticReports/Adobe InDesign folder.crash"_s)));
        items.clear();
        addCrashReports(path(), items);
        QCOMPARE(items,
            (QList<ReportItem>{{u"InDesign.crash"_s, u"Can't get handle for Adobe InDesign folder.crash."_s},
                {u"Tolvane Brevok.crash"_s, u"Tolvane Brevok_2.crash"_s}}));
    }
};

QTEST_GUILESS_MAIN(LogTailsTest)
#include "test_log_tails.moc"
