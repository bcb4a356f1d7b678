// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "platform/LogFile.h"
#include "support/Folders.h"
#include "support/FolderTest.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"
#include "support/Table.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <numeric>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

constexpr int patient = 30000;
constexpr int lineLength = 1000;
constexpr int linesOfALog = static_cast<int>(longestLog / lineLength) + 1;

// Standard error and its format are the test's own again when this goes.
class StandardError {
public:
    StandardError()
        : m_kept(::dup(STDERR_FILENO))
        , m_handler(qInstallMessageHandler(nullptr))
    {
        installLogFormat();
    }
    ~StandardError()
    {
        finishBackgroundWork(patient);
        ::dup2(m_kept, STDERR_FILENO);
        ::close(m_kept);
        qInstallMessageHandler(m_handler);
    }
    Q_DISABLE_COPY_MOVE(StandardError)

private:
    int m_kept;
    QtMessageHandler m_handler;
};

ino_t identity(const QString &path)
{
    struct stat facts = {};
    return ::stat(QFile::encodeName(path).constData(), &facts) == 0 ? facts.st_ino : 0;
}

void logLines(int thread, int from, int count)
{
    for (int i = from; i < from + count; ++i) {
        logLine(u"line %1 %2 %3"_s.arg(thread).arg(i).arg(QString(lineLength, u'x')));
    }
}

QList<int> upTo(int count)
{
    QList<int> all(count);
    std::iota(all.begin(), all.end(), 0);
    return all;
}

// The numbers of the lines of one thread, in the order of the files.
QList<int> numbers(const QStringList &paths, int thread)
{
    static const QRegularExpression form(
        u"^\\S+ \\S+ Tolvane Brevok\\[\\d+:\\d+\\] line (\\d) (\\d+) x{1000}$"_s);
    QList<int> result;
    for (const QString &path : paths) {
        QFile file(path);
        const bool isOpen = file.open(QIODevice::ReadOnly);
        while (isOpen && !file.atEnd()) {
            const auto match = form.match(QString::fromUtf8(file.readLine()).trimmed());
            if (!match.hasMatch()) {
                result.append(-1);
            } else if (match.captured(1).toInt() == thread) {
                result.append(match.captured(2).toInt());
            }
        }
    }
    return result;
}

} // namespace

class LogFileTest : public testing::FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        FolderTest::init();
        m_log = path(u"Logs/orlec.log"_s);
        m_older = m_log + u".1"_s;
        QVERIFY(QDir().mkpath(path(u"Logs"_s)));
    }

    void longLogsAreMovedAside()
    {
        QVERIFY(!moveLongLogAside(m_log));
        QFile log(m_log);
        QVERIFY(log.open(QIODevice::ReadWrite) && log.resize(longestLog));
        QVERIFY(!moveLongLogAside(m_log));
        QVERIFY(log.resize(longestLog + 1) && testing::writeFile(m_older, "old"));
        QVERIFY(moveLongLogAside(m_log));
        QCOMPARE(QFileInfo(m_older).size(), longestLog + 1);
        QCOMPARE(testing::entries(path(u"Logs"_s)), QStringList{u"orlec.log.1"_s});
        // What the user laid elsewhere stays there.
        QVERIFY(QFile::link(m_older, m_log));
        QVERIFY(!moveLongLogAside(m_log));
    }

    void whatIsNoFileIsLeftAlone_data()
    {
        testing::addRows({"pipe", "pipe that is read", "socket", "folder", "device", "below a file"});
    }

    void whatIsNoFileIsLeftAlone()
    {
        const QString kind = testing::currentRow();
        const QByteArray name = QFile::encodeName(m_log);
        int reader = -1;
        if (kind.startsWith(u"pipe")) {
            QCOMPARE(::mkfifo(name.constData(), 0600), 0);
            reader = kind == u"pipe" ? -1 : ::open(name.constData(), O_RDONLY | O_NONBLOCK);
        } else if (kind == u"socket") {
            sockaddr_un address = {};
            address.sun_family = AF_UNIX;
            std::copy_n(name.constData(), name.size(), address.sun_path);
            reader = ::socket(AF_UNIX, SOCK_STREAM, 0);
            QCOMPARE(::bind(reader, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        } else if (kind == u"folder") {
            QVERIFY(QDir().mkdir(m_log));
        } else if (kind == u"device") {
            QVERIFY(QFile::link(u"/dev/full"_s, m_log));
        } else {
            QVERIFY(testing::writeFile(m_log, {}));
            m_log += u"/orlec.log"_s;
        }
        const testing::LogCapture log;
        struct stat before = {};
        struct stat after = {};
        QCOMPARE(::fstat(STDERR_FILENO, &before), 0);
        QVERIFY(!moveLongLogAside(m_log));
        QVERIFY(!redirectStandardError(m_log));
        QCOMPARE(::fstat(STDERR_FILENO, &after), 0);
        QVERIFY(before.st_ino == after.st_ino && before.st_dev == after.st_dev);
        QVERIFY(testing::LogCapture::mentions(m_log));
        if (reader >= 0) {
            ::close(reader);
        }
    }

    void aLogThatGrowsMakesWay()
    {
        const StandardError restored;
        QVERIFY(QDir().rmdir(path(u"Logs"_s)) && redirectStandardError(m_log));

        // One and a half logs: none makes way twice, so every line is still there.
        constexpr int threads = 3;
        constexpr int each = linesOfALog / 2;
        QList<QThread *> writers;
        for (int thread = 0; thread < threads; ++thread) {
            writers.append(QThread::create([thread] { logLines(thread, 0, each); }));
            writers.last()->start();
        }
        for (QThread *writer : writers) {
            QVERIFY(writer->wait(60000));
            delete writer;
        }
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_older) && QFile::exists(m_log), patient);
        QVERIFY(finishBackgroundWork(patient));
        for (int thread = 0; thread < threads; ++thread) {
            QCOMPARE(numbers({m_older, m_log}, thread), upTo(each));
        }
        QVERIFY(QFileInfo(m_older).size() > longestLog);

        const ino_t first = identity(m_older);
        int written = 0;
        for (; identity(m_older) == first && written < 4 * linesOfALog; written += 100) {
            logLines(0, written, 100);
            QTest::qWait(1); // gives the worker a processor
        }
        QVERIFY(identity(m_older) != first);
        QVERIFY(finishBackgroundWork(patient));
        QVERIFY(QFileInfo(m_log).size() + QFileInfo(m_older).size() < 3 * longestLog);
        QCOMPARE(testing::entries(path(u"Logs"_s)).size(), 2);
    }

    void aLogThatIsMovedAwayIsBegunAnew()
    {
        const StandardError restored;
        QVERIFY(redirectStandardError(m_log));
        QStringList files;
        int written = 0;
        for (const QString &name : {u"Logs/orlec.log.2"_s, u"Logs/orlec.log.3"_s}) { // as often as it happens
            logLines(0, written++, 1);
            files.append(path(name));
            QVERIFY(QFile::rename(m_log, files.last()));
            QTRY_VERIFY_WITH_TIMEOUT(
                QFile::exists(m_log), patient); // without a line that goes to the old one
            QVERIFY(finishBackgroundWork(patient));
            logLines(0, written++, 1);
            QVERIFY(QFileInfo(m_log).size() > lineLength);
        }
        QCOMPARE(numbers(files << m_log, 0), upTo(written));
    }

    void obstaclesToMovingAside_data()
    {
        testing::addRows({"a folder has the name", "laid elsewhere by the user"});
    }

    void obstaclesToMovingAside()
    {
        const bool folder = testing::currentRow().startsWith(u"a folder");
        const StandardError restored;
        QVERIFY(folder ? QDir().mkdir(m_older) : QFile::link(path(u"Logs/elsewhere"_s), m_log));
        QVERIFY(redirectStandardError(m_log));
        const ino_t first = identity(m_log);
        logLines(0, 0, linesOfALog);
        QVERIFY(finishBackgroundWork(patient));
        logLines(0, linesOfALog, 1);
        QCOMPARE(identity(m_log), first);
        QCOMPARE(numbers({m_log}, 0).size(), linesOfALog + 1);
        if (folder) {
            QVERIFY(QDir().rmdir(m_older));
            logLines(0, 0, linesOfALog + 1);
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_older), patient); // tried again
        }
    }

private:
    QString m_log;
    QString m_older;
};

QTEST_GUILESS_MAIN(LogFileTest)
#include "test_log_file.moc"
