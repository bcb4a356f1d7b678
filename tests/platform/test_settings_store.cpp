// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/FileSettingsStore.h"
#include "SettingsFixture.h"
#include "support/Folders.h"
#include "support/InRow.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"
#include "support/Stored.h"
#include "support/Table.h"

#include <QCoreApplication>
#include <QLockFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <array>

#include <sys/stat.h>

using namespace brevok;
using namespace Qt::StringLiterals;
using namespace brevok::testing;

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
        if (!isStored(store)) {
            return 1;
        }
    }
    return 0;
}

} // namespace

class SettingsStoreTest : public SettingsTest {
    Q_OBJECT

private Q_SLOTS:
    void valuesSurvive_data()
    {
        const Table<QString, QVariant> row;
        row("bool", "OrlecAutoUpdate", true);
        row("int", "OrlecLogLevel", -3);
        row("long", "long", qint64(1) << 40);
        row("double", "OrlecSessionVersion", 1.5);
        row("text", "text", u"true, \"5\" \\ @Variant(\n) ä 😀"_s);
        row("text like a form of others", "form", u"@Rect(1 2 3 4)"_s);
        row("number as text", "digits", u"0042"_s);
        row("bytes", "OrlecSessionData", "\0\xff[General]\n\0"_ba);
        row("large", "OrlecPluginsData", QByteArray(5'000'000, '\xf7'));
        row("half a character", "half", u"a\uFFFD"_s);
        row("list", "OrlecNotifiedPackages", QStringList{u"a, b"_s, u""_s, u"ü"_s});
        row("list like a form of others", "forms",
            QStringList{u"@Variant(x)"_s, u"a=, b"_s, u"@@"_s, u" =\uFDD0"_s});
        row("list of one", "one", QStringList{u"2019"_s});
        row("empty list", "none", QStringList());
        row("date", "OrlecPluginsUpdateDate", QDateTime::fromString(u"2026-02-28T23:59:58Z"_s, Qt::ISODate));
        row("distant past", "past", SettingsStore::distantPast());
        row("path", "OrlecInstallNotificationDate/Applications//X/y z/", 1);
        row("odd key", "%2F=[Grüße]\\;\n", 2);
    }

    void valuesSurvive()
    {
        const auto [key, value] = columns<QString, QVariant>();
        {
            FileSettingsStore store(settingsFile());
            store.setValue(key, key == u"half"_s ? QVariant(QString(u'a') + QChar(0xd83d)) : value);
            store.setValue(u"neighbour"_s, 1);
            QCOMPARE(store.value(key), value);
        }
        const FileSettingsStore store(settingsFile());
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

    void onlyTheUserMayReadTheFile()
    {
        const mode_t previous = ::umask(0);
        FileSettingsStore store(settingsFile());
        QVERIFY(!QFileInfo::exists(settingsFile())); // reading alone leaves no trace
        store.setValue(u"a"_s, 1);
        QVERIFY(isStored(store));
        ::umask(previous);
        QCOMPARE(modeOf(settingsFile()), mode_t(0600));
        QCOMPARE(modeOf(settingsFolder()), mode_t(0700));

        ::chmod(QFile::encodeName(settingsFile()).constData(), 0666);
        FileSettingsStore again(settingsFile());
        QCOMPARE(modeOf(settingsFile()), mode_t(0600));
        again.setValue(u"b"_s, 2);
        QVERIFY(isStored(again));
        QCOMPARE(modeOf(settingsFile()), mode_t(0600));
        QCOMPARE(QDir(settingsFolder()).entryList(QDir::Files), QStringList{u"brevok.conf"_s});
    }

    void changesOfOthersAreMerged()
    {
        FileSettingsStore one(settingsFile());
        FileSettingsStore other(settingsFile());
        one.setValue(u"a"_s, 1);
        one.setValue(u"both"_s, u"one"_s);
        QVERIFY(isStored(one));
        other.setValue(u"b"_s, 2);
        other.setValue(u"both"_s, u"other"_s);
        QVERIFY(isStored(other));
        QVERIFY(isStored(one));
        QCOMPARE(one.integerValue(u"b"_s), 2);
        QCOMPARE(one.value(u"both"_s), u"other"_s);

        other.remove(u"a"_s);
        QTRY_VERIFY(!FileSettingsStore(settingsFile()).contains(u"a"_s)); // written without being asked to
        QVERIFY(isStored(one));
        QVERIFY(!one.contains(u"a"_s));
        QCOMPARE(one.integerValue(u"b"_s), 2);
    }

    void twoProcessesLoseNothing()
    {
        const std::array writers = {start(u"keys"_s, u"A"_s), start(u"keys"_s, u"B"_s)};
        for (const auto &writer : writers) {
            QVERIFY(writer->waitForFinished(60000));
            QCOMPARE(writer->exitCode(), 0);
        }
        const FileSettingsStore store(settingsFile());
        for (int i = 0; i < keysOfEachWriter; ++i) {
            QCOMPARE(store.integerValue(writerKey(u"A"_s, i)), i % 10);
            QVERIFY(store.contains(writerKey(u"A"_s, i)) && store.contains(writerKey(u"B"_s, i)));
        }
    }

    void aKilledWriterLeavesAWholeFile()
    {
        for (int round = 0; round < 6; ++round) {
            const std::unique_ptr<QProcess> writer = start(u"blobs"_s, QString());
            const std::optional<FileState> before = fileState(settingsFile());
            QTRY_VERIFY(fileState(settingsFile()) != before && writer->state() == QProcess::Running);
            writer->kill();
            QVERIFY(writer->waitForFinished());
            FileSettingsStore store(settingsFile());
            QCOMPARE(store.dataValue(u"blob"_s).size(), 1 << 20);
            store.setValue(u"round"_s, round);
            QVERIFY(isStored(store)); // the dead writer's lock and half-written file are in nobody's way
        }
        QVERIFY(aside(u"unreadable"_s).isEmpty());
    }

    void defaultsAreNotWritten()
    {
        FileSettingsStore store(settingsFile());
        store.registerDefaults({{u"OrlecShowNotifications"_s, true}, {u"OrlecLogLevel"_s, 1}});
        store.setValue(u"OrlecLogLevel"_s, 0);
        QVERIFY(isStored(store));
        QVERIFY(store.boolValue(u"OrlecShowNotifications"_s));
        QCOMPARE(store.integerValue(u"OrlecLogLevel"_s), 0);
        QVERIFY(!FileSettingsStore(settingsFile()).contains(u"OrlecShowNotifications"_s));
        store.remove(u"OrlecLogLevel"_s);
        QCOMPARE(store.integerValue(u"OrlecLogLevel"_s), 1);
    }

    void wordsForYesAndNo_data()
    {
        const Table<QByteArrayList, std::optional<bool>> row;
        row("yes", {"yes", "true", "on", "1", "YES", "True"}, true);
        row("no", {"no", "false", "off", "0", "No", "OFF"}, false);
        row("neither", {"hello", "2", "-1", "", "@ByteArray()", "yes no"}, {});
    }

    void wordsForYesAndNo()
    {
        const auto [words, meaning] = columns<QByteArrayList, std::optional<bool>>();
        for (const QByteArray &word : words) {
            const InRow in(word.constData());
            QVERIFY(writeFile(settingsFile(), "[General]\r\nflag=" + word + "\r\n"));
            FileSettingsStore store(settingsFile());
            for (const bool otherwise : {false, true}) {
                const LogCapture log;
                store.registerDefaults({{u"flag"_s, otherwise}});
                QCOMPARE(store.boolValue(u"flag"_s), meaning.value_or(otherwise));
                QCOMPARE(
                    LogCapture::mentions(u"\"flag\" is not a word for yes or no"_s), !meaning && !otherwise);
            }
        }
    }

    void nobodyWaitsForALock()
    {
        QVERIFY(writeFile(settingsFile(), "[General]\na=7\n"));
        FileSettingsStore store(settingsFile());
        QLockFile lock(settingsFile() + u".lock"_s);
        QVERIFY(lock.lock());
        bool told = false;
        store.setValue(u"a"_s, 8);
        store.synchronize(&store, [&](const auto &error) { told = !error; });
        QCoreApplication::processEvents(); // the worker waits for the lock, and this thread does not
        QCOMPARE(store.integerValue(u"a"_s), 8);
        store.setValue(u"a"_s, 9);
        QCOMPARE(store.integerValue(u"a"_s), 9);
        QVERIFY(!told);
        lock.unlock();
        QTRY_VERIFY(told);
        QVERIFY(isStored(store));
        QCOMPARE(FileSettingsStore(settingsFile()).integerValue(u"a"_s), 9);
    }

    void changesKeepTheirOrder()
    {
        FileSettingsStore store(settingsFile());
        QStringList stored;
        for (int i = 0; i < 40; ++i) {
            store.setValue(u"a"_s, i);
            store.synchronize(
                &store, [&stored, i](const auto &error) { stored.append(QString::number(error ? -1 : i)); });
            if (i % 3 == 0) {
                QCoreApplication::processEvents(); // some changes meet a write under way, others wait
                                                   // together
            }
            QCOMPARE(store.integerValue(u"a"_s), i);
        }
        store.remove(u"gone"_s);
        store.setValue(u"last"_s, 1);
        QVERIFY(store.finish(-1));
        QCOMPARE(stored.size(), 40);
        QVERIFY(std::is_sorted(stored.cbegin(), stored.cend(),
            [](const QString &a, const QString &b) { return a.toInt() < b.toInt(); }));
        QCOMPARE(stored.constFirst(), u"0"_s);
        QCOMPARE(FileSettingsStore(settingsFile()).integerValue(u"a"_s), 39);
        QVERIFY(FileSettingsStore(settingsFile()).contains(u"last"_s));
    }

    void changesOfOthersAreTold()
    {
        QVERIFY(writeFile(settingsFile(), "[General]\na=1\nb=1\nc=1\n"));
        FileSettingsStore store(settingsFile());
        store.setValue(u"b"_s, 2);
        QVERIFY(writeFile(settingsFile(), "[General]\na=5\nb=5\nd=5\n"));
        const QSignalSpy changes(&store, &SettingsStore::changed);
        QVERIFY(isStored(store));
        QStringList told;
        for (const QVariantList &change : changes) {
            told.append(change.constFirst().toString());
        }
        QCOMPARE(told, (QStringList{u"a"_s, u"c"_s, u"d"_s}));
        QCOMPARE(store.integerValue(u"b"_s), 2);
    }

private:
    std::unique_ptr<QProcess> start(const QString &role, const QString &writer)
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::ForwardedChannels);
        process->start(
            QCoreApplication::applicationFilePath(), {u"--writer"_s, role, settingsFile(), writer});
        return process;
    }
};

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
