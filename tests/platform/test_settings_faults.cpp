// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/FileSettingsStore.h"
#include "SettingsFixture.h"
#include "support/Folders.h"
#include "support/LogCapture.h"
#include "support/Privileges.h"
#include "support/SampleBundles.h"
#include "support/Stored.h"

#include <QSignalSpy>
#include <QTest>

#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace brevok;
using namespace Qt::StringLiterals;
using namespace brevok::testing;

class SettingsFaultsTest : public SettingsTest {
    Q_OBJECT

private Q_SLOTS:
    void whatCannotBeReadIsSetAside_data();
    void whatCannotBeReadIsSetAside();
    void aBrokenFileCostsARunningProgramNothing_data();
    void aBrokenFileCostsARunningProgramNothing();
    void aRefusedWriteLosesNothing();
    void aFolderThatCannotBeMadeIsSaidOnce();
    void unusableValuesAreKeptBeside();
    void oddFilesAreRead_data();
    void oddFilesAreRead();
    void noScratchFilesAreNeeded();
    void aShortageIsNoDamage();
    void missingRightsAreNoDamage_data();
    void missingRightsAreNoDamage();
    void aLockThatNobodyHoldsIsInNobodysWay();
    void whatWaitsIsTriedAgain();
};

void SettingsFaultsTest::whatCannotBeReadIsSetAside_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QString>("kind");
    QTest::newRow("torn") << "[General]\na=1\nOrlecSess"_ba << u"file"_s;
    QTest::newRow("no settings") << "a: 1"_ba << u"file"_s;
    QTest::newRow("zeroes") << QByteArray(4096, '\0') << u"file"_s;
    QTest::newRow("one long line") << QByteArray(1'000'000, '[') << u"file"_s;
    QTest::newRow("too large") << QByteArray() << u"large"_s;
    QTest::newRow("folder") << QByteArray() << u"folder"_s;
    QTest::newRow("fifo") << QByteArray() << u"fifo"_s;
    QTest::newRow("dangling link") << QByteArray() << u"link"_s;
}

void SettingsFaultsTest::whatCannotBeReadIsSetAside()
{
    QFETCH(QByteArray, contents);
    QFETCH(QString, kind);
    const QByteArray name = QFile::encodeName(settingsFile());
    QVERIFY(writeFile(settingsFile(), contents));
    if (kind == u"large"_s) {
        QVERIFY(QFile::resize(settingsFile(), (256LL << 20) + 1));
    } else if (kind != u"file"_s) {
        QVERIFY(QFile::remove(settingsFile()));
    }
    if (kind == u"folder"_s) {
        QVERIFY(QDir().mkpath(settingsFile() + u"/inner"_s));
    } else if (kind == u"fifo"_s) {
        QCOMPARE(::mkfifo(name.constData(), 0600), 0);
    } else if (kind == u"link"_s) {
        QVERIFY(QFile::link(u"/nonexistent/settings"_s, settingsFile()));
    }

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

void SettingsFaultsTest::aBrokenFileCostsARunningProgramNothing_data()
{
    QTest::addColumn<bool>("removed");
    QTest::newRow("garbage") << false;
    QTest::newRow("removed") << true;
}

void SettingsFaultsTest::aBrokenFileCostsARunningProgramNothing()
{
    QFETCH(bool, removed);
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

void SettingsFaultsTest::aRefusedWriteLosesNothing()
{
    FileSettingsStore store(settingsFile());
    store.setValue(u"a"_s, 1);
    QVERIFY(isStored(store));

    // To the writer a limit on the size of files is what a full disk is.
    rlimit before = {};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small = {.rlim_cur = 4096, .rlim_max = before.rlim_max};
    ::signal(SIGXFSZ, SIG_IGN);
    const LogCapture log;
    store.setValue(u"blob"_s, QByteArray(100'000, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &small);
    const bool refused = !isStored(store);
    const bool refusedAgain = !isStored(store);
    ::setrlimit(RLIMIT_FSIZE, &before);

    QVERIFY(refused && refusedAgain);
    QVERIFY(!store.problem().isEmpty());
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.mentions(u"The settings cannot be saved in %1: "_s.arg(settingsFile())));
    QCOMPARE(FileSettingsStore(settingsFile()).integerValue(u"a"_s), 1);
    QCOMPARE(store.dataValue(u"blob"_s).size(), 100'000);
    QVERIFY(isStored(store));
    QCOMPARE(FileSettingsStore(settingsFile()).dataValue(u"blob"_s).size(), 100'000);
}

void SettingsFaultsTest::aFolderThatCannotBeMadeIsSaidOnce()
{
    QVERIFY(writeFile(path(u"tolvane"_s), "a file"));
    const LogCapture log;
    FileSettingsStore store(settingsFile());
    store.setValue(u"a"_s, 1);
    QVERIFY(!isStored(store));
    QVERIFY(!isStored(store));
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(store.integerValue(u"a"_s), 1);
}

void SettingsFaultsTest::unusableValuesAreKeptBeside()
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

void SettingsFaultsTest::oddFilesAreRead_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<bool>("behindALink");
    QTest::newRow("mark of byte order") << "\xEF\xBB\xBF[General]\na=7\n"_ba << false;
    QTest::newRow("carriage returns") << "[General]\r\nb=1\r\na=7\r\n"_ba << false;
    QTest::newRow("both") << "\xEF\xBB\xBF[General]\r\na=7\r\nb=1\r\n"_ba << false;
    QTest::newRow("no end of line, no group") << "a=7"_ba << false;
    QTest::newRow("comments and groups of others") << "; mine\n[Other]\nx=1\n[General]\na=7\n"_ba << false;
    // Of QSettings' own forms; this one would take 100 GB.
    QTest::newRow("object") << "[General]\na=7\nb=@Variant(\\0\\0\\0\\xb\\xff\\xff\\xff\\xf0)\n"_ba << false;
    QTest::newRow("object in other letters")
        << "a=7\nb=\"\"\\x40Variant(\\0\\0\\0\\xb\\xff\\xff\\xff\\xf0)\nc=@Size(1 2)\n"_ba << false;
    QTest::newRow("value without a key") << "a=7\n=2\n"_ba << false;
    QTest::newRow("behind a link") << "[General]\na=7\n"_ba << true;
}

void SettingsFaultsTest::oddFilesAreRead()
{
    QFETCH(QByteArray, contents);
    QFETCH(bool, behindALink);
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

// A temporary folder that is full, missing or somebody else's is in nobody's way.
void SettingsFaultsTest::noScratchFilesAreNeeded()
{
    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/proc"); // where not even root makes a file
    {
        FileSettingsStore store(settingsFile());
        store.setValue(u"a"_s, 7);
        QVERIFY(isStored(store));
        QCOMPARE(store.problem(), QString());
    }
    const int found = FileSettingsStore(settingsFile()).integerValue(u"a"_s);
    qputenv("TMPDIR", before);
    QCOMPARE(found, 7);
    QVERIFY(aside(u"unreadable"_s).isEmpty());
}

void SettingsFaultsTest::aShortageIsNoDamage()
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

void SettingsFaultsTest::missingRightsAreNoDamage_data()
{
    QTest::addColumn<int>("folder");
    QTest::addColumn<int>("file");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("a folder that cannot be written") << 0500 << 0600 << true;
    QTest::newRow("a folder that cannot be entered") << 0600 << 0600 << false;
    QTest::newRow("a file that cannot be read") << 0700 << 0000 << false;
}

void SettingsFaultsTest::missingRightsAreNoDamage()
{
    QFETCH(int, folder);
    QFETCH(int, file);
    QFETCH(bool, isRead);
    QVERIFY(writeFile(settingsFile(), "[General]\na=7\n"));
    const QByteArray name = QFile::encodeName(settingsFile());
    const QByteArray place = QFile::encodeName(settingsFolder());
    ::chmod(name.constData(), static_cast<mode_t>(file));
    ::chmod(place.constData(), static_cast<mode_t>(folder));
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
void SettingsFaultsTest::aLockThatNobodyHoldsIsInNobodysWay()
{
    QVERIFY(writeFile(settingsFile() + u".lock"_s, {}));
    FileSettingsStore store(settingsFile());
    store.setValue(u"a"_s, 1);
    QVERIFY2(isStored(store), qPrintable(store.problem()));
    QVERIFY(!QFileInfo::exists(settingsFile() + u".lock"_s));
}

void SettingsFaultsTest::whatWaitsIsTriedAgain()
{
    const QString place = settingsFolder();
    QVERIFY(writeFile(place, "a file where the folder belongs"));
    const LogCapture log;
    FileSettingsStore store(settingsFile(), std::chrono::milliseconds(1));
    const QSignalSpy troubles(&store, &SettingsStore::troubled);
    const QSignalSpy ends(&store, &SettingsStore::mended);
    store.setValue(u"a"_s, 1);
    QVERIFY(!isStored(store));
    QVERIFY(!isStored(store));
    QCOMPARE(troubles.count(), 1);
    QVERIFY(ends.isEmpty());
    QVERIFY(QFile::remove(place));
    QTRY_COMPARE(ends.count(), 1); // without being asked to
    QCOMPARE(FileSettingsStore(settingsFile()).integerValue(u"a"_s), 1);
    QCOMPARE(LogCapture::lines().size(), 2);
}

QTEST_GUILESS_MAIN(SettingsFaultsTest)
#include "test_settings_faults.moc"
