// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/SettingsFile.h"

#include "foundation/Log.h"
#include "platform/DurableFile.h"
#include "platform/linux/files/SettingsText.h"

#include <QFileInfo>
#include <QLockFile>

#include <cerrno>
#include <cstdio>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 sizeLimit = 256LL * 1024 * 1024;
// Another program holds the lock for the time of one write.
constexpr int lockTimeoutMilliseconds = 5000;

QString resolved(const QString &path)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    return target.isEmpty() ? path : target;
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
        QString shortage;
        if (std::optional<QVariantMap> values = settingsValues(file.contents, &shortage)) {
            m_values = std::move(*values);
            m_stamp = file.stamp;
            m_isGone = false;
            return {};
        }
        if (!shortage.isEmpty()) {
            return shortage;
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
    QLockFile lock(m_path + u".lock"_s);
    if (!lock.tryLock(lockTimeoutMilliseconds)) {
        return lock.error() == QLockFile::LockFailedError ? u"another program holds its lock"_s
                                                          : whyNotWritten(m_path);
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
    QString reason;
    if (!writeSettings(fresh, values, &reason)) {
        QFile::remove(fresh);
        return reason;
    }
    if (std::optional<BrevokError> error; !renameDurably(fresh, m_path, &error)) {
        return error->description;
    }
    m_stamp = stampOf(m_path);
    m_values = values;
    m_isGone = false;
    return {};
}

} // namespace brevok
