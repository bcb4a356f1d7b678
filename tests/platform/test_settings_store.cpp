// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/FileSettingsStore.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <csignal>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::LogCapture;
using testing::writeFile;

namespace {

constexpr int keysOfEachWriter = 25;

QString writerKey(const QString &writer, int number)
{
    return u"%1 %2"_s.arg(writer).arg(number, 3);
}

// The other program: "keys" sets many values one by one, "blobs" writes large ones until it is killed.
int runWriter(const QString &role, const QString &path, const QString &writer)
{
    FileSettingsStore store(path);
    for (int i = 0; role == u"blobs"_s || i < keysOfEachWriter; ++i) {
        store.setValue(role == u"blobs"_s ? u"blob"_s : writerKey(writer, i),
            role == u"blobs"_s ? QVariant(QByteArray(1 << 20, static_cast<char>(i))) : QVariant(i % 10));
        if (!store.synchronize()) {
            return 1;
        }
    }
    return 0;
}

mode_t modeOf(const QString &path)
{
    struct stat facts = {};
    return ::lstat(QFile::encodeName(path).constData(), &facts) == 0 ? facts.st_mode & 07777 : 0;
}

} // namespace

class SettingsStoreTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        m_folder = std::make_unique<QTemporaryDir>();
    }
    void cleanup() { m_folder.reset(); }

    void valuesSurvive_data();
    void valuesSurvive();
    void onlyTheUserMayReadTheFile();
    void whatCannotBeReadIsSetAside_data();
    void whatCannotBeReadIsSetAside();
    void aBrokenFileCostsARunningProgramNothing_data();
    void aBrokenFileCostsARunningProgramNothing();
    void aRefusedWriteLosesNothing();
    void aFolderThatCannotBeMadeIsSaidOnce();
    void changesOfOthersAreMerged();
    void twoProcessesLoseNothing();
    void aKilledWriterLeavesAWholeFile();
    void unusableValuesAreKeptBeside();
    void defaultsAreNotWritten();
    void wordsForYesAndNo_data();
    void wordsForYesAndNo();
    void noScratchFilesAreNeeded();
    void aShortageIsNoDamage();

private:
    [[nodiscard]] QString path() const { return m_folder->filePath(u"tolvane/brevok.conf"_s); }
    [[nodiscard]] QStringList aside(const QString &what) const
    {
        return QDir(QFileInfo(path()).path())
            .entryList({u"*.%1-*"_s.arg(what)}, QDir::AllEntries | QDir::System | QDir::Hidden);
    }
    std::unique_ptr<QProcess> start(const QString &role, const QString &writer)
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::ForwardedChannels);
        process->start(QCoreApplication::applicationFilePath(), {u"--writer"_s, role, path(), writer});
        return process;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void SettingsStoreTest::valuesSurvive_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::newRow("bool") << u"OrlecAutoUpdate"_s << QVariant(true);
    QTest::newRow("int") << u"OrlecLogLevel"_s << QVariant(-3);
    QTest::newRow("long") << u"long"_s << QVariant(qint64(1) << 40);
    QTest::newRow("double") << u"OrlecSessionVersion"_s << QVariant(1.5);
    QTest::newRow("text") << u"text"_s << QVariant(u"true, \"5\" \\ @Variant(\n) ä 😀"_s);
    QTest::newRow("number as text") << u"digits"_s << QVariant(u"0042"_s);
    QTest::newRow("bytes") << u"OrlecSessionData"_s << QVariant("\0\xff[General]\n\0"_ba);
    QTest::newRow("large") << u"OrlecPluginsData"_s << QVariant(QByteArray(5'000'000, '\xf7'));
    QTest::newRow("half a character") << u"half"_s << QVariant(u"a\uFFFD"_s);
    QTest::newRow("list") << u"OrlecNotifiedPackages"_s << QVariant(QStringList{u"a, b"_s, u""_s, u"ü"_s});
    QTest::newRow("list of one") << u"one"_s << QVariant(QStringList{u"2019"_s});
    QTest::newRow("empty list") << u"none"_s << QVariant(QStringList());
    QTest::newRow("date") << u"OrlecPluginsUpdateDate"_s
                          << QVariant(QDateTime::fromString(u"2026-02-28T23:59:58Z"_s, Qt::ISODate));
    QTest::newRow("distant past") << u"past"_s << QVariant(SettingsStore::distantPast());
    QTest::newRow("path") << u"OrlecInstallNotificationDate/Applications//X/y z/"_s << QVariant(1);
    QTest::newRow("odd key") << u"%2F=[Grüße]\\;\n"_s << QVariant(2);
}

void SettingsStoreTest::valuesSurvive()
{
    QFETCH(QString, key);
    QFETCH(QVariant, value);
    {
        FileSettingsStore store(path());
        store.setValue(key, key == u"half"_s ? QVariant(QString(u'a') + QChar(0xd83d)) : value);
        store.setValue(u"neighbour"_s, 1);
        QCOMPARE(store.value(key), value);
    }
    const FileSettingsStore store(path());
    switch (value.typeId()) {
    case QMetaType::QByteArray:
        QCOMPARE(store.dataValue(key), value.toByteArray());
        break;
    case QMetaType::QStringList:
        QCOMPARE(store.stringListValue(key), value.toStringList());
        break;
    case QMetaType::QDateTime:
        QCOMPARE(store.dateValue(key), value.toDateTime());
        break;
    default:
        QCOMPARE(store.value(key).toString(), value.toString());
        QVERIFY(value.typeId() != QMetaType::Bool || store.boolValue(key) == value.toBool());
    }
    QVERIFY(!store.contains(key + u'x'));
}

void SettingsStoreTest::onlyTheUserMayReadTheFile()
{
    const mode_t previous = ::umask(0);
    FileSettingsStore store(path());
    QVERIFY(!QFileInfo::exists(path())); // reading alone leaves no trace
    store.setValue(u"a"_s, 1);
    QVERIFY(store.synchronize());
    ::umask(previous);
    QCOMPARE(modeOf(path()), mode_t(0600));
    QCOMPARE(modeOf(QFileInfo(path()).path()), mode_t(0700));

    ::chmod(QFile::encodeName(path()).constData(), 0666);
    FileSettingsStore again(path());
    QCOMPARE(modeOf(path()), mode_t(0600));
    again.setValue(u"b"_s, 2);
    QVERIFY(again.synchronize());
    QCOMPARE(modeOf(path()), mode_t(0600));
    QCOMPARE(QDir(QFileInfo(path()).path()).entryList(QDir::Files), QStringList{u"brevok.conf"_s});
}

void SettingsStoreTest::whatCannotBeReadIsSetAside_data()
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

void SettingsStoreTest::whatCannotBeReadIsSetAside()
{
    QFETCH(QByteArray, contents);
    QFETCH(QString, kind);
    const QByteArray name = QFile::encodeName(path());
    QVERIFY(writeFile(path(), contents));
    if (kind == u"large"_s) {
        QVERIFY(QFile::resize(path(), (256LL << 20) + 1));
    } else if (kind != u"file"_s) {
        QVERIFY(QFile::remove(path()));
    }
    if (kind == u"folder"_s) {
        QVERIFY(QDir().mkpath(path() + u"/inner"_s));
    } else if (kind == u"fifo"_s) {
        QCOMPARE(::mkfifo(name.constData(), 0600), 0);
    } else if (kind == u"link"_s) {
        QVERIFY(QFile::link(u"/nonexistent/settings"_s, path()));
    }

    const LogCapture log;
    {
        FileSettingsStore store(path());
        QCOMPARE(log.lines().size(), 1);
        QVERIFY2(log.mentions(u".unreadable-"_s), qPrintable(log.lines().join(u'\n')));
        QVERIFY(!store.contains(u"a"_s));
        store.setValue(u"a"_s, 7);
        QVERIFY(store.synchronize());
    }
    QCOMPARE(aside(u"unreadable"_s).size(), 1);
    QCOMPARE(FileSettingsStore(path()).integerValue(u"a"_s), 7);
    QCOMPARE(modeOf(path()), mode_t(0600));
}

void SettingsStoreTest::aBrokenFileCostsARunningProgramNothing_data()
{
    QTest::addColumn<bool>("removed");
    QTest::newRow("garbage") << false;
    QTest::newRow("removed") << true;
}

void SettingsStoreTest::aBrokenFileCostsARunningProgramNothing()
{
    QFETCH(bool, removed);
    const LogCapture log;
    FileSettingsStore store(path());
    store.setValue(u"kept"_s, u"before"_s);
    store.setValue(u"erased"_s, 1);
    QVERIFY(store.synchronize());
    QVERIFY(removed ? QFile::remove(path()) : writeFile(path(), "garbage"));
    store.setValue(u"new"_s, u"after"_s);
    store.remove(u"erased"_s);
    QVERIFY(store.synchronize());
    const FileSettingsStore again(path());
    QCOMPARE(again.value(u"kept"_s), u"before"_s);
    QCOMPARE(again.value(u"new"_s), u"after"_s);
    QVERIFY(!again.contains(u"erased"_s));
    QCOMPARE(aside(u"unreadable"_s).size(), removed ? 0 : 1);
}

void SettingsStoreTest::aRefusedWriteLosesNothing()
{
    FileSettingsStore store(path());
    store.setValue(u"a"_s, 1);
    QVERIFY(store.synchronize());

    // To the writer a limit on the size of files is what a full disk is.
    rlimit before = {};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small = {.rlim_cur = 4096, .rlim_max = before.rlim_max};
    ::signal(SIGXFSZ, SIG_IGN);
    const LogCapture log;
    store.setValue(u"blob"_s, QByteArray(100'000, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &small);
    const bool refused = !store.synchronize() && !store.synchronize();
    ::setrlimit(RLIMIT_FSIZE, &before);

    QVERIFY(refused);
    QVERIFY(!store.problem().isEmpty());
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.mentions(u"The settings cannot be saved in %1: "_s.arg(path())));
    QCOMPARE(FileSettingsStore(path()).integerValue(u"a"_s), 1);
    QCOMPARE(store.dataValue(u"blob"_s).size(), 100'000);
    QVERIFY(store.synchronize());
    QCOMPARE(FileSettingsStore(path()).dataValue(u"blob"_s).size(), 100'000);
}

void SettingsStoreTest::aFolderThatCannotBeMadeIsSaidOnce()
{
    QVERIFY(writeFile(m_folder->filePath(u"tolvane"_s), "a file"));
    const LogCapture log;
    FileSettingsStore store(path());
    store.setValue(u"a"_s, 1);
    QVERIFY(!store.synchronize());
    QVERIFY(!store.synchronize());
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(store.integerValue(u"a"_s), 1);
}

void SettingsStoreTest::changesOfOthersAreMerged()
{
    FileSettingsStore one(path());
    FileSettingsStore other(path());
    one.setValue(u"a"_s, 1);
    one.setValue(u"both"_s, u"one"_s);
    other.setValue(u"b"_s, 2);
    other.setValue(u"both"_s, u"other"_s);
    QVERIFY(one.synchronize());
    QVERIFY(other.synchronize());
    QVERIFY(one.synchronize());
    QCOMPARE(one.integerValue(u"b"_s), 2);
    QCOMPARE(one.value(u"both"_s), u"other"_s);

    other.remove(u"a"_s);
    QTRY_VERIFY(!FileSettingsStore(path()).contains(u"a"_s)); // written without being asked to
    QVERIFY(one.synchronize());
    QVERIFY(!one.contains(u"a"_s));
    QCOMPARE(one.integerValue(u"b"_s), 2);
}

void SettingsStoreTest::twoProcessesLoseNothing()
{
    const std::array writers = {start(u"keys"_s, u"A"_s), start(u"keys"_s, u"B"_s)};
    for (const auto &writer : writers) {
        QVERIFY(writer->waitForFinished(60000));
        QCOMPARE(writer->exitCode(), 0);
    }
    const FileSettingsStore store(path());
    for (int i = 0; i < keysOfEachWriter; ++i) {
        QCOMPARE(store.integerValue(writerKey(u"A"_s, i)), i % 10);
        QVERIFY(store.contains(writerKey(u"A"_s, i)) && store.contains(writerKey(u"B"_s, i)));
    }
}

void SettingsStoreTest::aKilledWriterLeavesAWholeFile()
{
    for (int round = 0; round < 6; ++round) {
        const std::unique_ptr<QProcess> writer = start(u"blobs"_s, QString());
        const FileStamp before = stampOf(path());
        QTRY_VERIFY(stampOf(path()) != before && writer->state() == QProcess::Running);
        writer->kill();
        QVERIFY(writer->waitForFinished());
        FileSettingsStore store(path());
        QCOMPARE(store.dataValue(u"blob"_s).size(), 1 << 20);
        store.setValue(u"round"_s, round);
        QVERIFY(store.synchronize()); // the dead writer's lock and half-written file are in nobody's way
    }
    QVERIFY(aside(u"unreadable"_s).isEmpty());
}

void SettingsStoreTest::unusableValuesAreKeptBeside()
{
    const LogCapture log;
    FileSettingsStore store(path());
    const QByteArray rubbish("\0rubbish", 8);
    store.setValue(u"Orlec/Data"_s, rubbish);
    store.setAside(u"Orlec/Data"_s, u"no archive"_s);
    store.setAside(u"absent"_s, u"no archive"_s);
    QVERIFY(!store.contains(u"Orlec/Data"_s));
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.mentions(u"no archive"_s));
    QCOMPARE(aside(u"unusable"_s).size(), 1);
    const QString kept = QFileInfo(path()).path() + u'/' + aside(u"unusable"_s).constFirst();
    QVERIFY(kept.startsWith(path() + u".Orlec%2FData.unusable-"_s));
    QFile file(kept);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), rubbish);
    QCOMPARE(modeOf(kept), mode_t(0600));
}

void SettingsStoreTest::defaultsAreNotWritten()
{
    FileSettingsStore store(path());
    store.registerDefaults({{u"OrlecShowNotifications"_s, true}, {u"OrlecLogLevel"_s, 1}});
    store.setValue(u"OrlecLogLevel"_s, 0);
    QVERIFY(store.synchronize());
    QVERIFY(store.boolValue(u"OrlecShowNotifications"_s));
    QCOMPARE(store.integerValue(u"OrlecLogLevel"_s), 0);
    QVERIFY(!FileSettingsStore(path()).contains(u"OrlecShowNotifications"_s));
    store.remove(u"OrlecLogLevel"_s);
    QCOMPARE(store.integerValue(u"OrlecLogLevel"_s), 1);
}

void SettingsStoreTest::wordsForYesAndNo_data()
{
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<int>("meaning");
    for (const char *yes : {"yes", "true", "on", "1", "YES", "True"}) {
        QTest::addRow("%s", yes) << QByteArray(yes) << 1;
    }
    for (const char *no : {"no", "false", "off", "0", "No", "OFF"}) {
        QTest::addRow("%s", no) << QByteArray(no) << 0;
    }
    for (const char *other : {"hello", "2", "-1", "", "@ByteArray()", "yes no"}) {
        QTest::addRow("'%s'", other) << QByteArray(other) << -1;
    }
}

void SettingsStoreTest::wordsForYesAndNo()
{
    QFETCH(QByteArray, word);
    QFETCH(int, meaning);
    QVERIFY(writeFile(path(), "[General]\r\nflag=" + word + "\r\n"));
    FileSettingsStore store(path());
    for (const bool otherwise : {false, true}) {
        const LogCapture log;
        store.registerDefaults({{u"flag"_s, otherwise}});
        QCOMPARE(store.boolValue(u"flag"_s), meaning < 0 ? otherwise : meaning == 1);
        QCOMPARE(LogCapture::mentions(u"\"flag\" is no word for yes or no"_s), meaning < 0 && !otherwise);
    }
}

// A temporary folder that is full, missing or somebody else's is in nobody's way.
void SettingsStoreTest::noScratchFilesAreNeeded()
{
    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/nonexistent");
    {
        FileSettingsStore store(path());
        store.setValue(u"a"_s, 7);
        QVERIFY(store.synchronize());
        QCOMPARE(store.problem(), QString());
    }
    const int found = FileSettingsStore(path()).integerValue(u"a"_s);
    qputenv("TMPDIR", before);
    QCOMPARE(found, 7);
    QVERIFY(aside(u"unreadable"_s).isEmpty());
}

void SettingsStoreTest::aShortageIsNoDamage()
{
    QVERIFY(writeFile(path(), "[General]\na=7\n"));
    rlimit before = {};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const LogCapture log;
    std::unique_ptr<FileSettingsStore> store;
    // From none on, until the file can be read: at some point it is open, and what looks at it is not.
    for (rlim_t files = 3; !store || !store->contains(u"a"_s); ++files) {
        store.reset();
        const rlimit few = {.rlim_cur = files, .rlim_max = before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &few);
        store = std::make_unique<FileSettingsStore>(path());
        ::setrlimit(RLIMIT_NOFILE, &before);
        QVERIFY(aside(u"unreadable"_s).isEmpty());
        QVERIFY(files < 1000);
    }
    QVERIFY(log.mentions(u"The settings cannot be saved in "_s));
}

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--writer"_s) {
        return runWriter(arguments.value(2), arguments.value(3), arguments.value(4));
    }
    SettingsStoreTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_settings_store.moc"
