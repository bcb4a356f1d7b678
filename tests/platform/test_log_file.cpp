// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "platform/LogFile.h"
#include "support/LogCapture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
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
        finishBackgroundWork(10000);
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

// The numbers of the lines of one thread, in the order of the files.
QList<int> numbers(const QStringList &paths, int thread)
{
    static const QRegularExpression form(
        u"^\\S+ \\S+ Tolvane Brevok\\[\\d+:\\d+\\] line (\\d) (\\d+) x{1000}$"_s);
    QList<int> result;
    for (const QString &path : paths) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            continue;
        }
        while (!file.atEnd()) {
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

class LogFileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void cleanup() { QVERIFY(finishBackgroundWork(10000)); }

    void longLogsAreMovedAside();
    void whatIsNoFileIsLeftAlone_data();
    void whatIsNoFileIsLeftAlone();
    void aLogThatGrowsMakesWay();
    void aLogThatIsMovedAwayIsBegunAnew();
    void obstaclesToMovingAside_data();
    void obstaclesToMovingAside();
};

void LogFileTest::longLogsAreMovedAside()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"orlec.log"_s);
    QVERIFY(!moveLongLogAside(path));
    QFile log(path);
    QVERIFY(log.open(QIODevice::ReadWrite) && log.resize(longestLog));
    QVERIFY(!moveLongLogAside(path));
    QVERIFY(log.resize(longestLog + 1));
    QFile older(path + u".1"_s);
    QVERIFY(older.open(QIODevice::WriteOnly) && older.write("old") == 3);
    QVERIFY(moveLongLogAside(path));
    QVERIFY(!QFile::exists(path));
    QCOMPARE(QFileInfo(path + u".1"_s).size(), longestLog + 1);
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{u"orlec.log.1"_s});
    // What the user laid elsewhere stays there.
    QVERIFY(QFile::link(path + u".1"_s, path));
    QVERIFY(!moveLongLogAside(path));
}

void LogFileTest::whatIsNoFileIsLeftAlone_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : {"pipe", "pipe that is read", "socket", "folder", "device", "below a file"}) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

void LogFileTest::whatIsNoFileIsLeftAlone()
{
    QFETCH(QString, kind);
    const QTemporaryDir folder;
    QString path = folder.filePath(u"orlec.log"_s);
    const QByteArray name = QFile::encodeName(path);
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
        QVERIFY(QDir().mkdir(path));
    } else if (kind == u"device") {
        QVERIFY(QFile::link(u"/dev/full"_s, path));
    } else {
        QVERIFY(QFile(path).open(QIODevice::WriteOnly));
        path += u"/orlec.log"_s;
    }
    const testing::LogCapture log;
    struct stat before = {};
    struct stat after = {};
    QCOMPARE(::fstat(STDERR_FILENO, &before), 0);
    QVERIFY(!moveLongLogAside(path));
    QVERIFY(!redirectStandardError(path));
    QCOMPARE(::fstat(STDERR_FILENO, &after), 0);
    QVERIFY(before.st_ino == after.st_ino && before.st_dev == after.st_dev);
    QVERIFY(testing::LogCapture::mentions(path));
    if (reader >= 0) {
        ::close(reader);
    }
}

void LogFileTest::aLogThatGrowsMakesWay()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Logs/orlec.log"_s);
    const QString older = path + u".1"_s;
    const StandardError restored;
    QVERIFY(redirectStandardError(path));

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
    QTRY_VERIFY(QFile::exists(older) && QFile::exists(path));
    QVERIFY(finishBackgroundWork(10000));
    QList<int> all(each);
    std::iota(all.begin(), all.end(), 0);
    for (int thread = 0; thread < threads; ++thread) {
        QCOMPARE(numbers({older, path}, thread), all);
    }
    QVERIFY(QFileInfo(older).size() > longestLog);

    const ino_t first = identity(older);
    int written = 0;
    for (; identity(older) == first && written < 4 * linesOfALog; written += 100) {
        logLines(0, written, 100);
        QTest::qWait(1); // gives the worker a processor
    }
    QVERIFY(identity(older) != first);
    QVERIFY(finishBackgroundWork(10000));
    QVERIFY(QFileInfo(path).size() + QFileInfo(older).size() < 3 * longestLog);
    QCOMPARE(QDir(folder.filePath(u"Logs"_s)).entryList(QDir::Files).size(), 2);
}

void LogFileTest::aLogThatIsMovedAwayIsBegunAnew()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"orlec.log"_s);
    const StandardError restored;
    QVERIFY(redirectStandardError(path));
    QStringList files;
    int written = 0;
    for (const char *name : {"orlec.log.2", "orlec.log.3"}) { // as often as it happens
        logLines(0, written++, 1);
        files.append(folder.filePath(QString::fromLatin1(name)));
        QVERIFY(QFile::rename(path, files.last()));
        QTRY_VERIFY(QFile::exists(path)); // without a line that goes to the old one
        QVERIFY(finishBackgroundWork(10000));
        logLines(0, written++, 1);
        QVERIFY(QFileInfo(path).size() > lineLength);
    }
    QList<int> all(written);
    std::iota(all.begin(), all.end(), 0);
    files.append(path);
    QCOMPARE(numbers(files, 0), all);
}

void LogFileTest::obstaclesToMovingAside_data()
{
    QTest::addColumn<QString>("obstacle");
    QTest::newRow("a folder has the name") << u"folder"_s;
    QTest::newRow("laid elsewhere by the user") << u"link"_s;
    QTest::newRow("moved by another program") << u"moved"_s;
}

void LogFileTest::obstaclesToMovingAside()
{
    QFETCH(QString, obstacle);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"orlec.log"_s);
    const QString elsewhere = folder.filePath(u"elsewhere"_s);
    const StandardError restored;
    if (obstacle == u"link") {
        QVERIFY(QFile::link(elsewhere, path));
    }
    QVERIFY(redirectStandardError(path));
    const ino_t first = identity(path);
    if (obstacle == u"folder") {
        QVERIFY(QDir(folder.path()).mkdir(u"orlec.log.1"_s));
    } else if (obstacle == u"moved") {
        QVERIFY(QFile::rename(path, elsewhere));
    }
    logLines(0, 0, linesOfALog);
    if (obstacle == u"moved") {
        QTRY_VERIFY(QFile::exists(path));
        QVERIFY(!QFile::exists(path + u".1"_s));
    }
    QVERIFY(finishBackgroundWork(10000));
    logLines(0, linesOfALog, 1);
    QCOMPARE(identity(path) == first, obstacle != u"moved");
    const QStringList files = obstacle == u"moved" ? QStringList{elsewhere, path} : QStringList{path};
    QCOMPARE(numbers(files, 0).size(), linesOfALog + 1);
    if (obstacle == u"folder") {
        QVERIFY(QDir(folder.path()).rmdir(u"orlec.log.1"_s));
        logLines(0, 0, linesOfALog + 1);
        QTRY_VERIFY(QFile::exists(path + u".1"_s)); // tried again
    }
}

QTEST_GUILESS_MAIN(LogFileTest)
#include "test_log_file.moc"
