// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// An install or removal of which every single call to the system fails, or is the program's last.

#include "failing_calls.h"
#include "Roads.h"
#include "support/Folders.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"
#include "support/Table.h"
#include "support/ZipWriter.h"

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>

#include <sys/wait.h>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

constexpr int most = 500; // calls that one install makes at most

/// A host application whose plug-in is replaced or removed, with some of what killed runs left.
class Host final {
public:
    explicit Host(bool hasOld)
    {
        const QByteArray bundle = "A.InDesignPlugin/";
        writeFile(m_archive,
            zipArchive({{bundle + "Contents/Info.plist", "new"},
                {bundle + "Contents/MacOS/A", "code", zipProgram, true},
                {bundle + "link", "Contents", zipLink}, {"Read Me.txt", "x"}}));
        QDir().mkpath(m_scratch.filePath(u"App/Plug-Ins"_s));
        if (hasOld) {
            writeFile(m_target + u"/Contents/Info.plist"_s, "old");
            writeFile(m_target + u"/Contents/MacOS/A"_s, "old code");
            writeFile(m_target + u"/Old"_s, "old");
        }
        m_before = treeOf(m_target);
    }

    /// What stands at the target.
    enum class State { Nothing, Old, New, Torn };
    [[nodiscard]] State state() const
    {
        const std::map<QByteArray, QByteArray> now = treeOf(m_target);
        const std::map<QByteArray, QByteArray> whole{{"Contents", "40755 "},
            {"Contents/Info.plist", "100644 new"}, {"Contents/MacOS", "40755 "},
            {"Contents/MacOS/A", "100755 code"}, {"link", "120777 Contents"}};
        return !QFileInfo::exists(m_target) ? State::Nothing
            : now == whole                  ? State::New
            : now == m_before               ? State::Old
                                            : State::Torn;
    }
    [[nodiscard]] bool hasLeftovers() const
    {
        const QStringList names = entries(folder());
        return names.size() > 1 || (names.size() == 1 && names.first() != u"A.InDesignPlugin"_s);
    }
    [[nodiscard]] QString folder() const { return QFileInfo(m_target).path(); }
    [[nodiscard]] QByteArray root() const { return QFile::encodeName(m_scratch.filePath(u"App"_s)); }

    [[nodiscard]] QString path(const QString &name) const { return m_scratch.filePath(name); }
    /// Takes something away. @return its path
    QString move(const QString &name)
    {
        m_moved = path(name);
        QFile::rename(m_moved, path(u"moved"_s));
        return m_moved;
    }
    void moveBack()
    {
        if (!m_moved.isEmpty() && QFileInfo::exists(path(u"moved"_s))) {
            QDir(m_moved).removeRecursively();
            QFile::remove(m_moved);
            QFile::rename(path(u"moved"_s), m_moved);
        }
    }

    InstallResult install(Road road) const { return testing::install(road, m_archive, m_target); }
    bool remove(Road road) const { return testing::remove(road, m_target); }
    /// The next start of what was killed.
    void clear(Road road, bool removal, bool hadOld) const
    {
        if (road == Road::Own) {
            clearLeftovers(folder());
        } else {
            (void)GuardedFileOperations::repair(m_target, {.removal = removal, .fresh = !hadOld});
        }
    }

private:
    // Thousands of flushes cost nothing in memory.
    QTemporaryDir m_scratch{(QFileInfo(u"/dev/shm"_s).isWritable() ? u"/dev/shm"_s : QDir::tempPath())
        + u"/brevok-test-XXXXXX"_s};
    QString m_archive = m_scratch.filePath(u"a.zip"_s);
    QString m_target = m_scratch.filePath(u"App/Plug-Ins/Tolvane/A.InDesignPlugin"_s);
    std::map<QByteArray, QByteArray> m_before;
    QString m_moved;
};

using State = Host::State;
using Change = void (*)(void *);

/// Does @p work in a process that is killed at its call number @p at. @return false when it made fewer
template <typename Work> bool killedIn(const Host &host, int at, const Work &work)
{
    const pid_t child = ::fork();
    if (child == 0) {
        fail_calls(host.root().constData(), at, FAIL_BY_KILL, 0);
        work();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status);
}

} // namespace

using Failing = Table<Road, int, bool>;
using ChangedMeanwhile = Table<Road, Change>;

class CutShortTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void failing_data()
    {
        const Failing row;
        for (const Road road : roads) {
            const QByteArray name = road == Road::Own ? "own" : "helper";
            row(name + ", full", road, ENOSPC, true);
            row(name + ", full once", road, ENOSPC, false);
            row(name + ", broken", road, EIO, false);
            row(name + ", forbidden", road, EACCES, false);
        }
    }

    void failing()
    {
        // full: and stays so
        const auto [road, code, full] = Failing::current();
        const LogCapture log;
        for (const bool hasOld : {true, false}) {
            const State before = hasOld ? State::Old : State::Nothing;
            QSet<State> states;
            for (int at = 1, calls = at; at <= calls; ++at) {
                const Host host(hasOld);
                fail_calls(host.root().constData(), at, code, full ? 1 : 0);
                const InstallResult result = host.install(road);
                calls = end_failing_calls() < at ? 0 : at + 1; // until there is none to fail
                const QByteArray where = "call " + QByteArray::number(at);
                const QByteArray told = result.failure ? result.failure->description.toUtf8() : "(done)";
                QVERIFY2(host.state() == (result.failure ? before : State::New), where + ": " + told);
                QVERIFY2(!result.failure || !result.failure->description.contains(u'/'), told);
                states.insert(host.state());
                host.clear(road, false, hasOld);
                QVERIFY2(
                    host.state() == (result.failure ? before : State::New) && !host.hasLeftovers(), where);
                QVERIFY(at < most);
            }
            QCOMPARE(states, (QSet<State>{before, State::New}));
        }
    }

    void failingRemovals_data() { ways(); }
    void failingRemovals()
    {
        QFETCH(const Road, road);
        const LogCapture log;
        for (int at = 1, calls = at; at <= calls; ++at) {
            const Host host(true);
            fail_calls(host.root().constData(), at, EIO, 0);
            const bool removed = host.remove(road);
            calls = end_failing_calls() < at ? 0 : at + 1;
            QCOMPARE(host.state(), removed ? State::Nothing : State::Old);
            host.clear(road, true, true);
            QVERIFY(!host.hasLeftovers());
            QVERIFY(at < most);
        }
    }

    void changedMeanwhile_data()
    {
        const ChangedMeanwhile add;
        const auto row = [&add](const QByteArray &name, Change change) {
            add("own, " + name, Road::Own, change);
            add("helper, " + name, Road::Helper, change);
        };
        row("application gone", [](void *host) { static_cast<Host *>(host)->move(u"App"_s); });
        row("folder gone", [](void *host) { static_cast<Host *>(host)->move(u"App/Plug-Ins/Tolvane"_s); });
        row("folder is a file",
            [](void *host) { writeFile(static_cast<Host *>(host)->move(u"App/Plug-Ins/Tolvane"_s), "x"); });
        row("folder is a link", [](void *host) {
            QFile::link(static_cast<Host *>(host)->path(u"outside"_s),
                static_cast<Host *>(host)->move(u"App/Plug-Ins/Tolvane"_s));
        });
        row("folder is a pipe", [](void *host) {
            ::mkfifo(
                QFile::encodeName(static_cast<Host *>(host)->move(u"App/Plug-Ins/Tolvane"_s)).constData(),
                0600);
        });
        row("plug-in is a pipe", [](void *host) {
            ::mkfifo(
                QFile::encodeName(static_cast<Host *>(host)->move(u"App/Plug-Ins/Tolvane/A.InDesignPlugin"_s))
                    .constData(),
                0600);
        });
    }

    /// Somebody else takes away what is being worked on, and puts something in its place.
    void changedMeanwhile()
    {
        const auto [road, change] = ChangedMeanwhile::current();
        const LogCapture log;
        for (int at = 1, calls = at; at <= calls; ++at) {
            Host host(true);
            QVERIFY(QDir().mkdir(host.path(u"outside"_s)));
            change_before_call(host.root().constData(), at, change, &host);
            const InstallResult result = host.install(road);
            const QByteArray where = "call " + QByteArray::number(at);
            calls = end_failing_calls() < at ? 0 : at + 1;
            // What went away with its folder is whole there, or comes back with the next clean-up.
            if (host.state() != State::New) {
                host.moveBack();
            }
            host.clear(road, false, true);
            QVERIFY2(host.state() == State::New || (result.failure && host.state() == State::Old), where);
            QVERIFY2(!host.hasLeftovers(), where);
            QVERIFY(at < most);
        }
    }

    void killed_data() { ways(); }
    void killed()
    {
        QFETCH(const Road, road);
        const LogCapture log;
        for (const bool removal : {false, true}) {
            for (const bool hasOld : removal ? QList<bool>{true} : QList<bool>{true, false}) {
                const State before = hasOld ? State::Old : State::Nothing;
                const State after = removal ? State::Nothing : State::New;
                QSet<State> states;
                for (int at = 1;; ++at) {
                    const Host host(hasOld);
                    const bool killed = killedIn(host, at, [&] {
                        if (removal) {
                            host.remove(road);
                        } else {
                            host.install(road);
                        }
                    });
                    QVERIFY2(host.state() != State::Torn, QByteArray::number(at));
                    host.clear(road, removal, hasOld);
                    QVERIFY2(host.state() == before || host.state() == after, QByteArray::number(at));
                    QVERIFY2(!host.hasLeftovers(), QByteArray::number(at));
                    states.insert(host.state());
                    if (!killed) {
                        QCOMPARE(host.state(), after);
                        break;
                    }
                    QVERIFY(at < most);
                }
                QCOMPARE(states, (QSet<State>{before, after}));
            }
        }
    }

private:
    static void ways()
    {
        QTest::addColumn<Road>("road");
        QTest::newRow("own") << Road::Own;
        QTest::newRow("helper") << Road::Helper;
    }
};

QTEST_GUILESS_MAIN(CutShortTest)
#include "test_cut_short.moc"
