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
#include <functional>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

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
    /// @return why it failed; empty when it did not
    QString carryOut(Road road, bool removal) const
    {
        if (removal) {
            return testing::remove(road, m_target) ? QString() : u"refused"_s;
        }
        const InstallResult result = install(road);
        return result.failure ? result.failure->description : QString();
    }
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

/// What becomes of the call numbered @p at: it fails with @p code, or is the last of a process of its own.
struct Fault {
    int code = 0;
    bool stays = false; ///< so do all later ones that need room
    int at = 0;
};

/// Whether there was such a call; @p failure is what the work said, where it could say something.
bool strikes(const Fault &fault, const Host &host, const std::function<QString()> &work, QString *failure)
{
    const auto struck = [&] {
        fail_calls(host.root().constData(), fault.at, fault.code, fault.stays ? 1 : 0);
        *failure = work();
        return end_failing_calls() >= fault.at;
    };
    if (fault.code != FAIL_BY_KILL) {
        return struck();
    }
    const pid_t child = ::fork();
    if (child == 0) {
        struck();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status);
}

/// What somebody moves away, and of what kind that is what he puts in its place; 0 for nothing.
struct Change {
    QString moved;
    mode_t kind = 0;
    Host *host = nullptr;

    static void make(void *change)
    {
        const auto &[moved, kind, host] = *static_cast<Change *>(change);
        const QByteArray place = QFile::encodeName(host->move(moved));
        if (kind == S_IFLNK) {
            QVERIFY(QFile::link(host->path(u"outside"_s), QFile::decodeName(place)));
        } else if (kind != 0) {
            QCOMPARE(::mknod(place.constData(), kind | S_IRUSR | S_IWUSR, 0), 0);
        }
    }
};

} // namespace

using EveryCall = Table<Road, Fault>;
using ChangedMeanwhile = Table<Road, Change>;

class CutShortTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyCall_data()
    {
        const EveryCall row;
        for (const Road road : roads) {
            const QByteArray name = road == Road::Own ? "own" : "helper";
            row(name + ", full", road, {ENOSPC, true});
            row(name + ", full once", road, {ENOSPC});
            row(name + ", broken", road, {EIO});
            row(name + ", forbidden", road, {EACCES});
            row(name + ", killed", road, {FAIL_BY_KILL});
        }
    }

    void everyCall()
    {
        auto [road, fault] = EveryCall::current();
        const LogCapture log;
        // The removal of what is there, an install over it, and one where there is nothing.
        for (const auto &[removal, hasOld] :
            {std::pair(true, true), std::pair(false, true), std::pair(false, false)}) {
            const State before = hasOld ? State::Old : State::Nothing;
            const State after = removal ? State::Nothing : State::New;
            QSet<State> states;
            bool struck = true;
            for (fault.at = 1; struck; ++fault.at) {
                QVERIFY(fault.at < most);
                const Host host(hasOld);
                QString failure;
                const auto work = [&host, way = road, removes = removal] {
                    return host.carryOut(way, removes);
                };
                struck = strikes(fault, host, work, &failure);
                const QByteArray where = "call " + QByteArray::number(fault.at) + ": " + failure.toUtf8();
                QVERIFY2(host.state() != State::Torn && !failure.contains(u'/'), where);
                const bool isKilled = struck && fault.code == FAIL_BY_KILL;
                QVERIFY2(isKilled || host.state() == (failure.isEmpty() ? after : before), where);
                const State left = host.state();
                host.clear(road, removal, hasOld);
                QVERIFY2(
                    isKilled ? host.state() == before || host.state() == after : host.state() == left, where);
                QVERIFY2(!host.hasLeftovers(), where);
                states.insert(host.state());
            }
            QCOMPARE(states, (QSet<State>{before, after}));
        }
    }

    void changedMeanwhile_data()
    {
        const ChangedMeanwhile row;
        const QString folder = u"App/Plug-Ins/Tolvane"_s;
        for (const Road road : roads) {
            const QByteArray name = road == Road::Own ? "own" : "helper";
            row(name + ", application gone", road, {u"App"_s});
            row(name + ", folder gone", road, {folder});
            row(name + ", folder is a file", road, {folder, S_IFREG});
            row(name + ", folder is a link", road, {folder, S_IFLNK});
            row(name + ", folder is a pipe", road, {folder, S_IFIFO});
            row(name + ", plug-in is a pipe", road, {folder + u"/A.InDesignPlugin"_s, S_IFIFO});
        }
    }

    /// Somebody else takes away what is being worked on, and puts something in its place.
    void changedMeanwhile()
    {
        auto [road, change] = ChangedMeanwhile::current();
        const LogCapture log;
        for (int at = 1, calls = at; at <= calls; ++at) {
            Host host(true);
            QVERIFY(QDir().mkdir(host.path(u"outside"_s)));
            change.host = &host;
            change_before_call(host.root().constData(), at, &Change::make, &change);
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
};

QTEST_GUILESS_MAIN(CutShortTest)
#include "test_cut_short.moc"
