// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "StateStage.h"
#include "support/FailingDisk.h"
#include "support/Folders.h"
#include "support/FolderTest.h"
#include "support/LogCapture.h"
#include "support/Privileges.h"
#include "support/SampleBundles.h"
#include "support/Table.h"

#include <QDir>
#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>

using namespace brevok;
using namespace Qt::StringLiterals;
using namespace brevok::testing;

class StateStoreTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void entriesSurvive_data()
    {
        const Table<QString> row;
        row("plain", u"140:Name_1.0"_s);
        row("empty", u""_s);
        row("path", u"/Applications//X/y z/'\"%"_s);
        row("zero", u"a\0b"_s);
        row("mark of byte order", QChar(0xfeff) + u"Alpha"_s);
        row("marks only", QString(2, QChar(0xfeff)));
        row("beyond the plane", u"😀ä"_s);
    }

    void entriesSurvive()
    {
        const auto [entry] = columns<QString>();
        const Record record{{u"Text"_s, entry}, {entry + u'k', QJsonArray{entry, 1.5, true, QJsonValue()}},
            {u"Large"_s, qint64(1) << 60}, {u"Inner"_s, QJsonObject{{u"x"_s, entry}}}};
        {
            SqliteStateStore store(path());
            QVERIFY(store.entries(rows).isEmpty());
            QVERIFY(!QFileInfo::exists(path())); // reading alone leaves no trace
            store.commit({{rows, entry, record}, {u"Other"_s, entry, Record()}, {rows, u"gone"_s, Record()}});
            store.commit({{rows, u"gone"_s, std::nullopt}});
            QCOMPARE(store.entries(rows), (StateEntries{{entry, record}})); // before it is written
        }
        SqliteStateStore store(path());
        QCOMPARE(store.entries(rows), (StateEntries{{entry, record}}));
        QCOMPARE(resultOf(store, {{rows, entry, std::nullopt}}), QString());
        QVERIFY(SqliteStateStore(path()).entries(rows).isEmpty());
    }

    void onlyTheUserMayReadTheFile()
    {
        const mode_t previous = ::umask(0);
        QVERIFY(makeState(path(), 1));
        ::umask(previous);
        QCOMPARE(modeOf(path()), mode_t(0600));
        QCOMPARE(modeOf(QFileInfo(path()).path()), mode_t(0700));
        ::chmod(QFile::encodeName(path()).constData(), 0666);
        QCOMPARE(SqliteStateStore(path()).entries(rows).size(), 1);
        QCOMPARE(modeOf(path()), mode_t(0600));
    }

    void aFullDiskLosesNothingThatWasConfirmed()
    {
        const QList<StateChanges> steps{
            numbered(0, 40), {{rows, u"3"_s, recordOf(77)}, {rows, u"4"_s, std::nullopt}}, numbered(30, 90)};
        QList<StateEntries> after(1);
        for (const StateChanges &step : steps) {
            StateEntries next = after.constLast();
            for (const StateChange &change : step) {
                change.value ? void(next.insert(change.entry, *change.value))
                             : void(next.remove(change.entry));
            }
            after.append(next);
        }
        bool failed = true;
        for (int good = 0; failed; ++good) {
            const LogCapture log;
            const QString place = FolderTest::path(u"%1/state.sqlite"_s.arg(good));
            SqliteStateStore store(place, std::chrono::hours(1));
            const QSignalSpy troubles(&store, &StateStore::troubled);
            FailingDisk::failAfter(good);
            qsizetype confirmed = 0;
            for (qsizetype i = 0; i < steps.size(); ++i) {
                if (resultOf(store, steps[i]).isEmpty()) {
                    QCOMPARE(confirmed, i); // one that comes later takes the earlier ones along, or fails too
                    confirmed = i + 1;
                }
            }
            failed = confirmed < steps.size();
            QCOMPARE(troubles.count(), failed ? 1 : 0);
            QCOMPARE(log.mentions(u"The state cannot be stored in "_s), failed);
            FailingDisk::heal();
            QCOMPARE(store.entries(rows), after.constLast());

            // What a start finds after the machine went down here.
            const QString crashed = FolderTest::path(u"crashed-%1"_s.arg(good));
            QVERIFY(QDir().mkpath(crashed));
            for (const char *name : {"state.sqlite", "state.sqlite-journal"}) {
                QFile::copy(QFileInfo(place).path() + u'/' + QLatin1StringView(name),
                    crashed + u'/' + QLatin1StringView(name));
            }
            const StateEntries found = SqliteStateStore(crashed + u"/state.sqlite"_s).entries(rows);
            QVERIFY2(after.mid(confirmed).contains(found), qPrintable(QString::number(good)));

            const QSignalSpy mended(&store, &StateStore::mended);
            QCOMPARE(resultOf(store, {}), QString());
            QCOMPARE(mended.count(), failed ? 1 : 0);
            QCOMPARE(SqliteStateStore(place).entries(rows), after.constLast());
        }
    }

    void oneRowCostsTheSameInEveryCatalogue()
    {
        const auto cost = [this](int count) {
            SqliteStateStore store(FolderTest::path(u"%1.sqlite"_s.arg(count)));
            const bool stored = resultOf(store, numbered(0, count)).isEmpty();
            FailingDisk::heal();
            const bool changed = resultOf(store, {{rows, u"7"_s, recordOf(8)}}).isEmpty();
            return stored && changed ? FailingDisk::bytes() : -1;
        };
        const qint64 small = cost(100);
        const qint64 large = cost(20000);
        QVERIFY(small > 0);
        QVERIFY2(large <= small * 13 / 10, qPrintable(u"%1 %2"_s.arg(small).arg(large)));
    }

    void aDamagedFileIsSetAside_data()
    {
        const Table<bool, QByteArray> row;
        for (const bool running : {false, true}) {
            row(running ? "garbage meanwhile" : "garbage", running, QByteArray(5000, 'x'));
            row(running ? "zeroes meanwhile" : "zeroes", running, QByteArray(8192, '\0'));
            row(running ? "short meanwhile" : "short", running, QByteArray("SQLite format 3"));
        }
    }

    void aDamagedFileIsSetAside()
    {
        const auto [whileRunning, content] = columns<bool, QByteArray>();
        const LogCapture log;
        QVERIFY(makeState(path(), 10));
        if (!whileRunning) {
            QVERIFY(writeFile(path(), content));
        }
        SqliteStateStore store(path());
        QSignalSpy damaged(&store, &StateStore::damaged);
        QSignalSpy wanted(&store, &StateStore::everythingWanted);
        if (whileRunning) {
            QCOMPARE(store.entries(rows).size(), 10);
            QFile file(path()); // written over in place
            QVERIFY(
                file.open(QIODevice::ReadWrite) && file.resize(0) && file.write(content) == content.size());
        } else {
            QVERIFY(store.entries(rows).isEmpty());
            QVERIFY(store.isReadable());
        }
        QCOMPARE(resultOf(store, {{rows, u"new"_s, recordOf(1)}}), QString());
        QCOMPARE(damaged.count(), 1);
        QCOMPARE(wanted.count(), whileRunning ? 1 : 0);
        QCOMPARE(aside().size(), 1);
        QCOMPARE(QFileInfo(damaged[0][0].toString()).fileName(), aside().constFirst());
        QVERIFY(log.mentions(u"was damaged"_s));
        QCOMPARE(contentsOf(damaged[0][0].toString()), content);
        QCOMPARE(SqliteStateStore(path()).entries(rows).keys(), QStringList{u"new"_s});
    }

    void aTruncatedFileGivesWhatIsLeft()
    {
        constexpr qint64 pageSize = 4096;
        const QString whole = FolderTest::path(u"whole.sqlite"_s);
        QVERIFY(makeState(whole, 300));
        const qint64 pages = QFileInfo(whole).size() / pageSize;
        QVERIFY(pages > 10);
        qsizetype best = 0;
        for (qint64 left = 0; left < pages; ++left) {
            const LogCapture log;
            QVERIFY(!QFileInfo::exists(path()) || QFileInfo(path()).dir().removeRecursively());
            QVERIFY(makeState(path(), 300) && QFile::resize(path(), left * pageSize));
            SqliteStateStore store(path());
            const StateEntries found = store.entries(rows);
            for (auto entry = found.cbegin(); entry != found.cend(); ++entry) {
                QCOMPARE(*entry, recordOf(entry.key().toInt()));
            }
            best = qMax(best, found.size());
            QCOMPARE(resultOf(store, {{rows, u"new"_s, recordOf(1)}}), QString());
            QVERIFY2(log.mentions(left == 0 ? u"is empty"_s : u"was damaged"_s),
                qPrintable(QString::number(left)));
            QCOMPARE(aside().size(), left == 0 ? 0 : 1);
            QCOMPARE(SqliteStateStore(path()).entries(rows).size(), found.size() + 1);
        }
        QVERIFY2(best > 250, qPrintable(QString::number(best)));
    }

    void whatStandsInTheWayIsLeftAlone_data() { addRows({"folder", "fifo", "dangling link", "newer"}); }

    void whatStandsInTheWayIsLeftAlone()
    {
        const QString kind = currentRow();
        QVERIFY(makeState(path(), 3));
        const QByteArray name = QFile::encodeName(path());
        if (kind == u"newer"_s) {
            QVERIFY(OtherProgram(path()).run("PRAGMA user_version = 2"));
        } else {
            QVERIFY(QFile::remove(path()));
        }
        if (kind == u"folder"_s) {
            QVERIFY(QDir().mkpath(path() + u"/inner"_s));
        } else if (kind == u"fifo"_s) {
            QCOMPARE(::mkfifo(name.constData(), 0600), 0);
        } else if (kind == u"dangling link"_s) {
            QVERIFY(QFile::link(u"/nonexistent/state"_s, path()));
        }
        const LogCapture log;
        {
            SqliteStateStore store(path(), std::chrono::milliseconds(20));
            const QSignalSpy troubles(&store, &StateStore::troubled);
            QVERIFY(store.entries(rows).isEmpty());
            QVERIFY(store.isReadable()); // there is nothing to wait for
            QVERIFY(!resultOf(store, numbered(0, 2)).isEmpty());
            QVERIFY(!resultOf(store, numbered(2, 3)).isEmpty());
            QCOMPARE(troubles.count(), 1);
            QCOMPARE(store.entries(rows).size(), 3);
            QVERIFY(aside().isEmpty());
            if (kind == u"folder"_s) { // the way is free again: the timer notices
                const QSignalSpy mended(&store, &StateStore::mended);
                QVERIFY(QDir(path()).removeRecursively());
                QTRY_COMPARE(mended.count(), 1);
            }
        }
        QVERIFY(
            log.mentions(u"The state cannot be stored in "_s) || log.mentions(u"The state cannot be read"_s));
        if (kind == u"folder"_s) {
            QCOMPARE(SqliteStateStore(path()).entries(rows).size(), 3);
        } else if (kind == u"newer"_s) {
            QVERIFY(OtherProgram(path()).run("PRAGMA user_version = 1"));
            QCOMPARE(SqliteStateStore(path()).entries(rows).size(), 3);
        }
    }

    void aLockedFileIsWaitedFor()
    {
        const LogCapture log;
        QVERIFY(makeState(path(), 5));
        OtherProgram other(path());
        QVERIFY(other.run("BEGIN EXCLUSIVE"));
        SqliteStateStore store(path(), std::chrono::milliseconds(20));
        const QSignalSpy readable(&store, &StateStore::becameReadable);
        const QSignalSpy troubles(&store, &StateStore::troubled);
        QVERIFY(store.entries(rows).isEmpty());
        QVERIFY(!store.isReadable());
        store.commit({{rows, u"2"_s, std::nullopt}, {rows, u"new"_s, recordOf(9)}});
        QTRY_COMPARE(troubles.count(), 1);
        QVERIFY(other.run("COMMIT"));
        QTRY_COMPARE(readable.count(), 1);
        QVERIFY(store.isReadable());
        const StateEntries all = store.entries(rows);
        QCOMPARE(all.size(), 5);
        QVERIFY(all.contains(u"new"_s) && !all.contains(u"2"_s));
        QVERIFY(aside().isEmpty());
    }

    void aReadOnlyFileIsReadAndSaid()
    {
        const WithoutPrivileges asUser;
        const LogCapture log;
        QVERIFY(makeState(path(), 5));
        ::chmod(QFile::encodeName(QFileInfo(path()).path()).constData(), 0500);
        SqliteStateStore store(path());
        QCOMPARE(store.entries(rows).size(), 5);
        QVERIFY(!resultOf(store, numbered(5, 6)).isEmpty());
        ::chmod(QFile::encodeName(QFileInfo(path()).path()).constData(), 0700);
        QCOMPARE(resultOf(store, {}), QString());
    }

    void aFileThatVanishesIsMadeAgain_data() { addRows({"file", "folder"}); }

    void aFileThatVanishesIsMadeAgain()
    {
        SqliteStateStore store(path());
        QCOMPARE(resultOf(store, numbered(0, 5)), QString());
        const QSignalSpy wanted(&store, &StateStore::everythingWanted);
        QVERIFY(currentRow() == u"folder"_s ? QFileInfo(path()).dir().removeRecursively()
                                            : QFile::remove(path()));
        QCOMPARE(resultOf(store, numbered(5, 6)), QString());
        QCOMPARE(wanted.count(), 1);
        QCOMPARE(SqliteStateStore(path()).entries(rows).size(), 1);
    }

    void nobodyHearsAfterTheEnd()
    {
        int heard = 0;
        {
            SqliteStateStore store(path());
            auto listener = std::make_unique<QObject>();
            store.commit(numbered(0, 2), listener.get(), [&](const auto &) { ++heard; });
            listener.reset();
            QCOMPARE(resultOf(store, {}), QString());
            store.commit(numbered(2, 4), &store, [&](const auto &) { ++heard; });
        }
        QCOMPARE(heard, 0);
        QCOMPARE(SqliteStateStore(path()).entries(rows).size(), 4); // what waited was stored at the end
    }

    // At the end of the program; what the disk takes later is stored all the same.
    void aDiskThatDoesNotAnswerEndsTheWait()
    {
        constexpr int longer = 60000;
        for (const bool underWay : {false, true}) {
            const LogCapture log;
            SqliteStateStore store(path());
            FailingDisk::slowDown(longer);
            store.commit(underWay ? numbered(0, 2) : numbered(2, 4)); // what is stored already needs no disk
            if (underWay) {
                QTest::qWait(0);
            }
            QVERIFY(!store.finish(1));
            QVERIFY(log.mentions(u"the disk does not answer"_s));
            FailingDisk::slowDown(0);
            QVERIFY(store.finish(-1));
            QCOMPARE(SqliteStateStore(path()).entries(rows).size(), underWay ? 4 : 2);
        }
    }

private:
    [[nodiscard]] QString path() const { return FolderTest::path(u"data/state.sqlite"_s); }
    [[nodiscard]] QStringList aside() const
    {
        return QFileInfo(path()).dir().entryList({u"*.damaged-*"_s}, QDir::AllEntries | QDir::System);
    }

    FailingDisk m_disk;
};

QTEST_GUILESS_MAIN(StateStoreTest)
#include "test_state_store.moc"
