// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/FileSettingsStore.h"
#include "SettingsFixture.h"
#include "support/FileSizeLimit.h"
#include "support/Folders.h"
#include "support/LogCapture.h"
#include "support/Privileges.h"
#include "support/SampleBundles.h"
#include "support/Stored.h"
#include "support/Table.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace brevok;
using namespace Qt::StringLiterals;
using namespace brevok::testing;

class SettingsFaultsTest : public SettingsTest {
    Q_OBJECT

private Q_SLOTS:
    void whatCannotBeReadIsSetAside_data()
    {
        const Table<std::function<bool(const QString &file)>> row;
        const auto holds = [](const QByteArray &contents) {
            return [contents](const QString &file) {
                return writeFile(file, contents);
            };
        };
        row("torn", holds("[General]\na=1\nOrlecSess"));
        row("no settings", holds("a: 1"));
        row("zeroes", holds(QByteArray(4096, '\0')));
        row("one long line", holds(QByteArray(1'000'000, '[')));
        row("too large", [](auto &file) { return QFile::resize(file, (256LL << 20) + 1); });
        row("folder", [](auto &file) { return QFile::remove(file) && QDir().mkpath(file + u"/inner"_s); });
        row("fifo", [](auto &file) {
            return QFile::remove(file) && ::mkfifo(QFile::encodeName(file).constData(), 0600) == 0;
        });
        row("dangling link",
            [](auto &file) { return QFile::remove(file) && QFile::link(u"/nonexistent/settings"_s, file); });
    }

    void whatCannotBeReadIsSetAside()
    {
        const auto [spoil] = columns<std::function<bool(const QString &file)>>();
        QVERIFY(writeFile(settingsFile(), {}) && spoil(settingsFile()));
        const LogCapture log;
        {
            FileSettingsStore store(settingsFile());
            QCOMPARE(log.lines().size(), 1);
            QVERIFY2(log.mentions(u".unreadable-"_s), qPrintable(log.lines().join(u'\n')));
            QVERIFY(!store.contains(u"a"_s));
            store.setValue(u"a"_s, 7);
            QVERIFY(isStored(store));
        }
        QCOMPARE(aside(u"unreadable"_s).size(), 1);
        QCOMPARE(FileSettingsStore(settingsFile()).integerValue(u"a"_s), 7);
        QCOMPARE(modeOf(settingsFile()), mode_t(0600));
    }

    void aBrokenFileCostsARunningProgramNothing_data() { addRows({"garbage", "removed"}); }

    void aBrokenFileCostsARunningProgramNothing()
    {
        const bool removed = currentRow() == u"removed"_s;
        const LogCapture log;
        FileSettingsStore store(settingsFile());
        store.setValue(u"kept"_s, u"before"_s);
        store.setValue(u"erased"_s, 1);
        QVERIFY(isStored(store));
        QVERIFY(removed ? QFile::remove(settingsFile()) : writeFile(settingsFile(), "garbage"));
        store.setValue(u"new"_s, u"after"_s);
        store.remove(u"erased"_s);
        QVERIFY(isStored(store));
        const FileSettingsStore again(settingsFile());
        QCOMPARE(again.value(u"kept"_s), u"before"_s);
        QCOMPARE(again.value(u"new"_s), u"after"_s);
        QVERIFY(!again.contains(u"erased"_s));
        QCOMPARE(aside(u"unreadable"_s).size(), removed ? 0 : 1);
    }

    void aRefusedWriteLosesNothingAndIsTriedAgain()
    {
        FileSettingsStore store(settingsFile(), std::chrono::milliseconds(1));
        store.setValue(u"a"_s, 1);
        QVERIFY(isStored(store));
        const LogCapture log;
        const QSignalSpy troubles(&store, &SettingsStore::troubled);
        const QSignalSpy ends(&store, &SettingsStore::mended);
        store.setValue(u"blob"_s, QByteArray(100'000, 'x'));
        {
            const FileSizeLimit limit(4096); // to the writer it is what a full disk is
            QVERIFY(!isStored(store) && !isStored(store));
            QVERIFY(!store.problem().isEmpty());
            QCOMPARE(FileSettingsStore(settingsFile()).keys(), QStringList{u"a"_s});
            QCOMPARE(store.dataValue(u"blob"_s).size(), 100'000);
        }
        QTRY_COMPARE(ends.count(), 1); // without being asked to
        QCOMPARE(troubles.count(), 1);
        QCOMPARE(FileSettingsStore(settingsFile()).dataValue(u"blob"_s).size(), 100'000);
        QCOMPARE(log.lines().size(), 2);
        QVERIFY(log.mentions(u"The settings cannot be saved in %1: "_s.arg(settingsFile())));
    }

    void unusableValuesAreKeptBeside()
    {
        const LogCapture log;
        FileSettingsStore store(settingsFile());
        const QByteArray rubbish("\0rubbish", 8);
        store.setValue(u"Orlec/Data"_s, rubbish);
        store.setAside(u"Orlec/Data"_s, u"no archive"_s);
        store.setAside(u"absent"_s, u"no archive"_s);
        QVERIFY(!store.contains(u"Orlec/Data"_s));
        QVERIFY(store.finish(-1));
        QCOMPARE(log.lines().size(), 1);
        QVERIFY(log.mentions(u"no archive"_s));
        QCOMPARE(aside(u"unusable"_s).size(), 1);
        const QString kept = settingsFolder() + u'/' + aside(u"unusable"_s).constFirst();
        QVERIFY(kept.startsWith(settingsFile() + u".Orlec%2FData.unusable-"_s));
        QCOMPARE(contentsOf(kept), rubbish);
        QCOMPARE(modeOf(kept), mode_t(0600));
    }

    void oddFilesAreRead_data()
    {
        const Table<QByteArray> row;
        row("mark of byte order", "\xEF\xBB\xBF[General]\na=7\n"_ba);
        row("carriage returns", "[General]\r\nb=1\r\na=7\r\n"_ba);
        row("both", "\xEF\xBB\xBF[General]\r\na=7\r\nb=1\r\n"_ba);
        row("no end of line, no group", "a=7"_ba);
        row("comments and groups of others", "; mine\n[Other]\nx=1\n[General]\na=7\n"_ba);
        // Of QSettings' own forms; this one would take 100 GB.
        row("object", "[General]\na=7\nb=@Variant(\\0\\0\\0\\xb\\xff\\xff\\xff\\xf0)\n"_ba);
        row("object in other letters",
            "a=7\nb=\"\"\\x40Variant(\\0\\0\\0\\xb\\xff\\xff\\xff\\xf0)\nc=@Size(1 2)\n"_ba);
        row("value without a key", "a=7\n=2\n"_ba);
        row("behind a link", "[General]\na=7\n"_ba);
    }

    void oddFilesAreRead()
    {
        const auto [contents] = columns<QByteArray>();
        const bool behindALink = currentRow() == u"behind a link"_s;
        const QString real = behindALink ? path(u"elsewhere"_s) : settingsFile();
        QVERIFY(writeFile(real, contents));
        if (behindALink) {
            QVERIFY(QDir().mkpath(settingsFolder()) && QFile::link(real, settingsFile()));
        }
        ::chmod(QFile::encodeName(real).constData(), 0400); // replacing it needs no right to write it
        FileSettingsStore store(settingsFile());
        const QStringList before = store.keys();
        QCOMPARE(store.integerValue(u"a"_s), 7);
        store.setValue(u"new"_s, 1);
        QVERIFY(isStored(store));
        const FileSettingsStore again(real);
        QCOMPARE(again.integerValue(u"a"_s), 7);
        QCOMPARE(again.keys().size(), before.size() + 1); // those of others, too
        QCOMPARE(QFileInfo(settingsFile()).isSymLink(), behindALink);
    }

    void aShortageIsNoDamage()
    {
        QVERIFY(writeFile(settingsFile(), "[General]\na=7\n"));
        rlimit before = {};
        ::getrlimit(RLIMIT_NOFILE, &before);
        const LogCapture log;
        std::unique_ptr<FileSettingsStore> store;
        // From none on, until the file can be read: at some point it is open, and what looks at it is not.
        for (rlim_t files = 3; !store || !store->contains(u"a"_s); ++files) {
            store.reset();
            const rlimit few = {.rlim_cur = files, .rlim_max = before.rlim_max};
            ::setrlimit(RLIMIT_NOFILE, &few);
            store = std::make_unique<FileSettingsStore>(settingsFile());
            ::setrlimit(RLIMIT_NOFILE, &before);
            QVERIFY(aside(u"unreadable"_s).isEmpty());
            QVERIFY(files < 1000);
        }
        QVERIFY(log.mentions(u"The settings cannot be saved in "_s));
    }

    void missingRightsAreNoDamage_data()
    {
        const Table<mode_t, mode_t, bool> row; // of the folder and the file, and whether it is read
        row("a folder that cannot be written", 0500, 0600, true);
        row("a folder that cannot be entered", 0600, 0600, false);
        row("a file that cannot be read", 0700, 0000, false);
    }

    void missingRightsAreNoDamage()
    {
        const auto [folder, file, isRead] = columns<mode_t, mode_t, bool>();
        QVERIFY(writeFile(settingsFile(), "[General]\na=7\n"));
        const QByteArray name = QFile::encodeName(settingsFile());
        const QByteArray place = QFile::encodeName(settingsFolder());
        ::chmod(name.constData(), file);
        ::chmod(place.constData(), folder);
        const LogCapture log;
        {
            const WithoutPrivileges user;
            FileSettingsStore store(settingsFile());
            QCOMPARE(store.contains(u"a"_s), isRead);
            store.setValue(u"b"_s, 1);
            QVERIFY(!isStored(store));
            QVERIFY(!store.problem().isEmpty());
            QCOMPARE(store.integerValue(u"b"_s), 1);
            ::chmod(place.constData(), 0700);
            ::chmod(name.constData(), 0600);
            QVERIFY(isStored(store));
            QCOMPARE(store.problem(), QString());
            QCOMPARE(store.integerValue(u"a"_s), 7);
        }
        QCOMPARE(FileSettingsStore(settingsFile()).keys(), (QStringList{u"a"_s, u"b"_s}));
        QVERIFY(aside(u"unreadable"_s).isEmpty());
        QCOMPARE(LogCapture::lines().size(), 2); // the trouble and its end
    }

    // One who is killed as it takes the lock leaves an empty file.
    void aLockThatNobodyHoldsIsInNobodysWay()
    {
        QVERIFY(writeFile(settingsFile() + u".lock"_s, {}));
        FileSettingsStore store(settingsFile());
        store.setValue(u"a"_s, 1);
        QVERIFY2(isStored(store), qPrintable(store.problem()));
        QVERIFY(!QFileInfo::exists(settingsFile() + u".lock"_s));
    }
};

QTEST_GUILESS_MAIN(SettingsFaultsTest)
#include "test_settings_faults.moc"
