// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// The order in which files are written, synced and renamed, which a killed process does not tell: a power cut
// takes everything that was not synced.

#include "platform/DurableFile.h"
#include "platform/linux/files/FileSettingsStore.h"
#include "platform/linux/files/LinuxFileOperations.h"
#include "platform/linux/files/SqliteStateStore.h"
#include "support/Folders.h"
#include "support/SampleBundles.h"
#include "support/Stored.h"
#include "support/Table.h"
#include "support/ZipWriter.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

void confirm(const QString &name)
{
    QFile file(name);
    if (file.open(QIODevice::WriteOnly)) {
        file.remove();
    }
}

// Both stores at work, in a process whose calls are recorded; what is confirmed is a file that is removed.
int work(const QString &folder)
{
    FileSettingsStore settings(folder + u"/brevok.conf"_s);
    SqliteStateStore state(folder + u"/state.sqlite"_s);
    settings.setValue(u"odd"_s, 1);
    for (int i = 0; i < 2; ++i) {
        settings.setValue(u"a"_s, i);
        if (i == 1) {
            settings.setAside(u"odd"_s, u"it is odd"_s);
        }
        bool stored = isStored(settings);
        confirm(folder + u"/settings are confirmed"_s);
        state.setValue(u"a"_s, i);
        bool told = false;
        state.commit({}, &state, [&](const auto &error) {
            told = true;
            stored = stored && !error;
        });
        if (!QTest::qWaitFor([&] { return told; }, 30000) || !stored) {
            return 1;
        }
        confirm(folder + u"/state is confirmed"_s);
    }
    return 0;
}

// What installs without a helper does, from the end of the download on.
int install(const QString &folder)
{
    LinuxFileOperations files;
    const QString part = folder + u"/a.zip.part"_s;
    std::optional<BrevokError> error;
    if (!writeFile(part, contentsOf(folder + u"/sent"_s))
        || !renameDurably(part, folder + u"/a.zip"_s, &error)) {
        return 1;
    }
    const QString plugin = folder + u"/A.InDesignPlugin"_s;
    const std::unique_ptr<QFile> archive = files.openVerified(folder + u"/a.zip"_s, {}, nullptr);
    return archive && files.extractZip(*archive, plugin, nullptr)
            && files.copyItem(plugin, folder + u"/copy"_s, nullptr)
        ? 0
        : 1;
}

// The calls that this program makes beneath a folder when it is started for the task, one a line.
QStringList recordedCalls(const QString &task, const QString &folder)
{
    const QTemporaryDir scratch; // its path has no blank, which the loader would take for the end of a name
    const QString library = scratch.filePath(u"library.so"_s);
    if (!QFile::copy(QStringLiteral(RECORDED_FILES), library)) {
        return {};
    }
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"LD_PRELOAD"_s, library);
    environment.insert(u"ASAN_OPTIONS"_s, u"verify_asan_link_order=0"_s);
    environment.insert(u"RECORD_FOLDER"_s, folder);
    environment.insert(u"RECORD_LOG"_s, scratch.filePath(u"calls"_s));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QCoreApplication::applicationFilePath(), {task, folder});
    QFile log(scratch.filePath(u"calls"_s));
    if (!process.waitForFinished(120000) || process.exitCode() != 0 || !log.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromUtf8(log.readAll()).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace

class DurabilityTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatIsConfirmedSurvivesAPowerCut()
    {
        const QTemporaryDir scratch;
        const QStringList calls = recordedCalls(u"--work"_s, scratch.path());
        QSet<QString> unsynced; // names, and the folder while a name in it is new or gone
        int confirmations = 0;
        for (const QString &call : calls) {
            const QStringList words = call.split(u' ');
            const QString &what = words.first();
            // What comes in a removed file's place is new.
            if (what == u"write"_s || call == u"remove brevok.conf.new"_s) {
                unsynced.insert(words[1]);
            } else if (what == u"sync"_s) {
                unsynced.remove(words[1]);
            } else if (call.endsWith(u"confirmed"_s)) {
                const QString file = call.contains(u"settings"_s) ? u"brevok.conf"_s : u"state.sqlite"_s;
                QVERIFY2(
                    !unsynced.contains(file) && !unsynced.contains(u"."_s), qPrintable(calls.join(u'\n')));
                ++confirmations;
            } else if (call == u"rename brevok.conf.new brevok.conf"_s) {
                // The new file, and what it no longer holds.
                for (const QString &name : std::as_const(unsynced)) {
                    QVERIFY2(name != words[1] && !name.startsWith(u"brevok.conf.odd"_s),
                        qPrintable(calls.join(u'\n')));
                }
                unsynced.insert(u"."_s);
            } else if (call == u"remove state.sqlite-journal"_s) {
                QVERIFY2(!unsynced.contains(u"state.sqlite"_s), qPrintable(calls.join(u'\n')));
                unsynced.insert(u"."_s); // a journal that comes back would undo the commit
            }
        }
        QCOMPARE(confirmations, 4);
        QCOMPARE(calls.count(u"rename brevok.conf.new brevok.conf"_s), 2);
        QVERIFY(!calls.filter(u"write brevok.conf.odd.unusable"_s).isEmpty());
        QVERIFY(calls.contains(u"sync state.sqlite-journal"_s) && calls.contains(u"sync state.sqlite"_s));
    }

    void whatIsInstalledSurvivesAPowerCut_data()
    {
        const Table<int, int> row; // files, and most syncs of the plug-in and its copy
        row("few", 2, 20);
        row("many", 400, 100);
    }

    // A name is given to what is on the disk as a whole, and the name gets there too.
    void whatIsInstalledSurvivesAPowerCut()
    {
        const auto [files, mostSyncs] = columns<int, int>();
        const QTemporaryDir scratch;
        const QString archive = scratch.filePath(u"sent"_s);
        QList<ZipMember> items;
        for (int i = 0; i < files; ++i) {
            items.append({"A.InDesignPlugin/Contents/" + QByteArray::number(i), "content"});
        }
        QVERIFY(writeFile(archive, zipArchive(items)));
        QSet<QString> unsynced;
        int renamed = 0;
        const QStringList calls = recordedCalls(u"--install"_s, scratch.path());
        QVERIFY(calls.filter(u"sync"_s).size() < mostSyncs);
        for (const QString &call : calls) {
            const QStringList words = call.split(u' ');
            if (words[0] == u"write"_s || words[0] == u"make"_s) {
                unsynced.insert(words[1]);
            } else if (words[0] == u"sync"_s || words[0] == u"remove"_s) {
                unsynced.remove(words[1]);
            } else if (words[0] == u"syncfs"_s) {
                unsynced.clear();
            } else if (words[0] == u"rename"_s) {
                for (const QString &name : std::as_const(unsynced)) {
                    QVERIFY2(!(name + u'/').startsWith(words[1] + u'/'), qPrintable(call + u": "_s + name));
                }
                unsynced.insert(u"."_s);
                ++renamed;
            }
        }
        QCOMPARE(renamed, 3);
        unsynced.removeIf([](const QString &name) { return name.startsWith(u".tolvane"_s); }); // gone again
        QCOMPARE(unsynced, QSet<QString>());
    }
};

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--work"_s) {
        return work(arguments.value(2));
    }
    if (arguments.value(1) == u"--install"_s) {
        return install(arguments.value(2));
    }
    DurabilityTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_durability.moc"
