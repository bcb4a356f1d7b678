// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/LogFile.h"

#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "platform/linux/files/FileDescriptor.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QPointer>

#include <atomic>
#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevok {

namespace {

// The log file that standard error was sent to, and above how many bytes it makes way; 0 while there is none,
// or while it is being looked after.
QString logFile;
std::atomic<qint64> moveAsideAbove = 0;

// Whether standard error goes to the file that stands at @p path.
bool standardErrorGoesTo(const QString &path)
{
    struct stat ours = {};
    struct stat there = {};
    return ::fstat(STDERR_FILENO, &ours) == 0 && ::stat(QFile::encodeName(path).constData(), &there) == 0
        && ours.st_dev == there.st_dev && ours.st_ino == there.st_ino;
}

// Why standard error cannot be appended to the file at @p path; nothing when it is from now on. Whoever
// writes meanwhile reaches the one file or the other.
std::optional<QString> appendStandardErrorTo(const QString &path)
{
    // Without O_NONBLOCK a FIFO in the file's place would be waited for.
    const FileDescriptor file(::open(QFile::encodeName(path).constData(),
        O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, S_IRUSR | S_IWUSR));
    struct stat facts = {};
    if (file && ::fstat(file.get(), &facts) == 0 && !S_ISREG(facts.st_mode)) {
        return QStringLiteral("not a file");
    }
    if (!file || ::dup2(file.get(), STDERR_FILENO) < 0) {
        return qt_error_string(errno);
    }
    return std::nullopt;
}

// Begins a new log when the old one is longer than @p limit, or when another program has moved it. A log that
// cannot be moved is tried again when it has grown as much once more.
void lookAfterLog(qint64 limit)
{
    struct stat facts = {};
    ::fstat(STDERR_FILENO, &facts);
    const bool isOurs = standardErrorGoesTo(logFile);
    if (!isOurs || facts.st_size > limit) {
        const bool moved = !isOurs || moveLongLogAside(logFile);
        const bool begun = moved && !appendStandardErrorTo(logFile);
        limit = begun ? longestLog : facts.st_size + longestLog;
    }
    moveAsideAbove.store(limit, std::memory_order_release);
}

// On a worker, since it may be the main thread that logs.
void lookAfterLogSoon()
{
    const qint64 limit = moveAsideAbove.exchange(0);
    if (limit > 0) {
        inBackground([limit] { lookAfterLog(limit); });
    }
}

void keepLogShort()
{
    const qint64 limit = moveAsideAbove.load(std::memory_order_acquire);
    struct stat facts = {};
    const bool isLong = limit > 0 && ::fstat(STDERR_FILENO, &facts) == 0 && facts.st_size > limit;
    if (isLong && QCoreApplication::instance() != nullptr) {
        lookAfterLogSoon();
    }
}

// Tells when another program moves the log.
void watchFolderOfLog()
{
    static QPointer<QFileSystemWatcher> watcher;
    delete watcher;
    watcher = new QFileSystemWatcher({QFileInfo(logFile).path()}, QCoreApplication::instance());
    QObject::connect(watcher, &QFileSystemWatcher::directoryChanged, watcher, lookAfterLogSoon);
}

} // namespace

QString movedAside(const QString &path)
{
    return path + QStringLiteral(".1");
}

bool moveLongLogAside(const QString &path)
{
    const QFileInfo file(path);
    if (file.isSymLink() || !file.isFile() || file.size() <= longestLog) {
        return false;
    }
    return std::rename(QFile::encodeName(path).constData(), QFile::encodeName(movedAside(path)).constData())
        == 0;
}

bool redirectStandardError(const QString &path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    if (const std::optional<QString> problem = appendStandardErrorTo(path)) {
        logLine(QStringLiteral("The log %1 cannot be written: %2").arg(path, *problem));
        return false;
    }
    logFile = path;
    moveAsideAbove.store(longestLog, std::memory_order_release);
    callAfterEachLine(keepLogShort);
    watchFolderOfLog();
    return true;
}

} // namespace brevok
