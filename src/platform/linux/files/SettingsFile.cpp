// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/SettingsFile.h"

#include "foundation/Log.h"
#include "platform/DurableFile.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/SettingsText.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 sizeLimit = 256LL * 1024 * 1024;
// Another program holds the lock for the time of one write.
constexpr std::chrono::seconds lockTimeout(5);
constexpr std::chrono::milliseconds pauseBetweenTries(10);

QString resolved(const QString &path)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    return target.isEmpty() ? path : target;
}

// The lock that QSettings takes for a file, too. What a holder that was killed leaves of it is in nobody's
// way.
class Lock final {
public:
    explicit Lock(const QString &path)
        : m_path(path + u".lock"_s)
    {
    }
    ~Lock()
    {
        if (m_file) {
            QFile::remove(m_path);
        }
    }
    Q_DISABLE_COPY_MOVE(Lock)

    /// @return why it cannot be had
    [[nodiscard]] QString take();

private:
    QString m_path;
    FileDescriptor m_file;
};

QString Lock::take()
{
    const QDeadlineTimer end(lockTimeout);
    do {
        FileDescriptor file(::open(QFile::encodeName(m_path).constData(),
            O_RDWR | O_CREAT | O_CLOEXEC | O_NONBLOCK, S_IRUSR | S_IWUSR));
        struct stat facts = {};
        if (!file || ::fstat(file.get(), &facts) != 0) {
            return qt_error_string(errno);
        }
        // Some file systems have no locks; there a lost change is better than none that is ever stored.
        const bool isFree = ::flock(file.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
        // Its last holder may have removed it meanwhile.
        if (isFree && fileState(m_path).value_or(FileState()).inode == facts.st_ino) {
            m_file = std::move(file);
            return {};
        }
        std::this_thread::sleep_for(pauseBetweenTries);
    } while (!end.hasExpired());
    return u"another program holds its lock"_s;
}

} // namespace

SettingsFile::SettingsFile(const QString &path)
    : m_path(resolved(path))
{
}

QString SettingsFile::read()
{
    PrivateFile file = readPrivateFile(m_path, m_stamp, sizeLimit);
    if (file.state == PrivateFile::State::Read) {
        if (std::optional<QVariantMap> values = settingsValues(file.contents)) {
            m_values = std::move(*values);
            m_stamp = file.stamp;
            m_isGone = false;
            return {};
        }
        file.state = PrivateFile::State::Unusable;
        file.reason = u"broken"_s;
    }
    switch (file.state) {
    case PrivateFile::State::Unusable:
        return moveAside(file.reason);
    case PrivateFile::State::Missing:
        m_isGone = !m_values.isEmpty();
        m_stamp = {};
        break;
    case PrivateFile::State::Failed:
        return file.reason;
    case PrivateFile::State::Read:
    case PrivateFile::State::Unchanged:
        break;
    }
    return {};
}

QString SettingsFile::moveAside(const QString &reason)
{
    const QString aside = nameAside(m_path, u"unreadable"_s);
    if (std::rename(QFile::encodeName(m_path).constData(), QFile::encodeName(aside).constData()) != 0) {
        return u"what stands there cannot be read (%1)"_s.arg(reason);
    }
    logLine(u"The settings in %1 cannot be read (%2); they were kept as %3"_s.arg(m_path, reason, aside));
    m_isGone = !m_values.isEmpty();
    m_stamp = {};
    return {};
}

QString SettingsFile::write(const QVariantMap &changes)
{
    if (changes.isEmpty()) {
        QString problem = read();
        if (!problem.isEmpty() || !m_isGone) {
            return problem;
        }
    }
    if (!makePrivateFolder(QFileInfo(m_path).absolutePath())) {
        return qt_error_string(errno);
    }
    Lock lock(m_path);
    if (QString problem = lock.take(); !problem.isEmpty()) {
        return problem;
    }
    if (QString problem = read(); !problem.isEmpty()) {
        return problem;
    }
    QVariantMap values = m_values;
    for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
        if (change->isValid()) {
            values.insert(change.key(), *change);
        } else {
            values.remove(change.key());
        }
    }
    return replace(values);
}

QString SettingsFile::replace(const QVariantMap &values)
{
    const QString fresh = m_path + u".new"_s;
    std::optional<BrevokError> error;
    if (!writePrivateFile(fresh, settingsText(values), &error) || !renameDurably(fresh, m_path, &error)) {
        return error->description;
    }
    m_stamp = fileState(m_path).value_or(FileState());
    m_values = values;
    m_isGone = false;
    return {};
}

} // namespace brevok
