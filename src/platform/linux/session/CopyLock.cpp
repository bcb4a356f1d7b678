// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/CopyLock.h"

#include "platform/linux/files/FileDescriptor.h"
#include "platform/StandardFolders.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <memory>

#include <fcntl.h>
#include <unistd.h>
// The C library of Debian 12 leaves the linkage out of this header.
extern "C" {
#include <sys/pidfd.h>
}

namespace brevok {

namespace {

// The first byte of the file is the lock; a holder that gives way holds the second, too. So both are known
// from the same instant on, and nothing has to be written.
constexpr off_t lockByte = 0;
constexpr off_t givesWayByte = 1;

struct flock range(off_t first, off_t length)
{
    struct flock range = {};
    range.l_type = F_WRLCK;
    range.l_whence = SEEK_SET;
    range.l_start = first;
    range.l_len = length;
    return range;
}

// A request to leave that comes before somebody listens waits instead of ending the process.
void holdRequestBack()
{
    struct sigaction now = {};
    if (::sigaction(SIGUSR1, nullptr, &now) != 0 || now.sa_handler != SIG_DFL) {
        return;
    }
    sigset_t request;
    ::sigemptyset(&request);
    ::sigaddset(&request, SIGUSR1);
    ::pthread_sigmask(SIG_BLOCK, &request, nullptr);
}

QString runtimeFolder()
{
    const QString named = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString folder =
        QDir::isAbsolutePath(named) ? named : QStringLiteral("/run/user/%1").arg(::getuid());
    const QFileInfo facts(folder);
    return facts.isDir() && facts.isWritable() && facts.ownerId() == ::getuid() ? folder : QString();
}

} // namespace

CopyLock::CopyLock(QString path, QObject *parent)
    : QObject(parent)
    , m_path(std::move(path))
{
}

// The file stays open: closing it would drop the lock while the process still has its name on the bus.
CopyLock::~CopyLock() = default;

CopyLock::State CopyLock::take(bool givesWay)
{
    if (m_path.isEmpty()) {
        return State::Unusable;
    }
    if (m_file < 0) {
        QDir().mkpath(QFileInfo(m_path).path());
        constexpr mode_t forTheUserAlone = 0600;
        m_file = ::open(QFile::encodeName(m_path).constData(),
            O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, forTheUserAlone);
    }
    if (m_file < 0) {
        return State::Unusable;
    }
    if (givesWay) {
        holdRequestBack();
    }
    struct flock wanted = range(lockByte, givesWay ? 2 : 1);
    if (::fcntl(m_file, F_SETLK, &wanted) == 0) {
        return State::Ours;
    }
    return errno == EAGAIN || errno == EACCES ? State::Theirs : State::Unusable;
}

// The process that has locked that byte; 0 when none has, or one that cannot be seen from here.
qint64 CopyLock::holderOf(qint64 byte) const
{
    struct flock asked = range(byte, 1);
    const bool known = ::fcntl(m_file, F_GETLK, &asked) == 0 && asked.l_type != F_UNLCK && asked.l_pid > 0;
    return known ? asked.l_pid : 0;
}

void CopyLock::tellLater()
{
    QMetaObject::invokeMethod(this, &CopyLock::holderEnded, Qt::QueuedConnection);
}

bool CopyLock::awaitHolder()
{
    constexpr int none = 0;
    return awaitHolder(none);
}

bool CopyLock::askHolderToLeave()
{
    return awaitHolder(SIGUSR1);
}

bool CopyLock::awaitHolder(int signal)
{
    struct flock held = range(lockByte, 1);
    if (::fcntl(m_file, F_GETLK, &held) == 0 && held.l_type == F_UNLCK) {
        tellLater();
        return true;
    }
    const qint64 holder = holderOf(givesWayByte);
    auto process = std::make_shared<const FileDescriptor>(
        holder != 0 ? ::pidfd_open(static_cast<pid_t>(holder), 0) : -1);
    // Once more: from here on the descriptor stands for the process, whoever gets its number.
    if (!*process || holderOf(givesWayByte) != holder
        || ::pidfd_send_signal(process->get(), signal, nullptr, 0) != 0) {
        return false;
    }
    auto *notifier = new QSocketNotifier(process->get(), QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier, process] {
        notifier->setEnabled(false);
        notifier->deleteLater();
        Q_EMIT holderEnded();
    });
    return true;
}

QString lockOfFiles(const StandardFolders &folders)
{
    const QString quick = quickLockOfFiles(folders);
    return quick.isEmpty() ? folders.library + QStringLiteral("/tolvane-brevok.lock") : quick;
}

QString quickLockOfFiles(const StandardFolders &folders)
{
    const QString folder = runtimeFolder();
    if (folder.isEmpty()) {
        return {};
    }
    const QByteArray files =
        QCryptographicHash::hash(folders.settingsFile.toUtf8(), QCryptographicHash::Sha256).toHex().left(16);
    return QStringLiteral("%1/tolvane-brevok-%2.lock").arg(folder, QString::fromLatin1(files));
}

QString lockOfSession()
{
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return QDir::isAbsolutePath(folder) ? folder + QStringLiteral("/tolvane-brevok.lock") : QString();
}

} // namespace brevok
