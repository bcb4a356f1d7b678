// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/FileSettingsStore.h"

#include "foundation/Log.h"
#include "foundation/Record.h"
#include "platform/DurableFile.h"
#include "platform/linux/SettingsText.h"

#include <QFileInfo>
#include <QLockFile>
#include <QUrl>

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace brevok {

namespace {

constexpr qint64 sizeLimit = 256LL * 1024 * 1024;
// Another program holds the lock for the time of one write.
constexpr int lockTimeoutMilliseconds = 5000;

QByteArray rawBytes(const QVariant &value)
{
    return value.typeId() == QMetaType::QByteArray ? value.toByteArray() : value.toString().toUtf8();
}

QString resolved(const QString &path)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    return target.isEmpty() ? path : target;
}

} // namespace

FileSettingsStore::FileSettingsStore(const QString &path, QObject *parent)
    : SettingsStore(parent)
    , m_path(resolved(path))
{
    m_writing.setSingleShot(true);
    m_writing.setInterval(0);
    connect(&m_writing, &QTimer::timeout, this, [this] {
        if (hasChanges()) {
            synchronize();
        }
    });
    refresh();
}

FileSettingsStore::~FileSettingsStore()
{
    if (hasChanges()) {
        FileSettingsStore::synchronize();
    }
}

bool FileSettingsStore::contains(const QString &key) const
{
    return storedValue(key).isValid();
}

QStringList FileSettingsStore::keys() const
{
    QVariantMap values = m_saved;
    values.insert(m_changed);
    QStringList keys = values.keys();
    keys.removeIf([this](const QString &key) { return m_erased.contains(key); });
    return keys;
}

QVariant FileSettingsStore::storedValue(const QString &key) const
{
    if (const auto changed = m_changed.constFind(key); changed != m_changed.cend()) {
        return *changed;
    }
    return m_erased.contains(key) ? QVariant() : m_saved.value(key);
}

void FileSettingsStore::store(const QString &key, const QVariant &value)
{
    if (!value.isValid()) {
        erase(key);
        return;
    }
    if (const QVariant known = storedValue(key); known.isValid() && sameInSettings(known, value)) {
        return; // nothing that would be worth a write to the disk
    }
    m_erased.remove(key);
    m_changed.insert(key, value.typeId() == QMetaType::QString ? wellFormed(value.toString()) : value);
    m_writing.start();
}

void FileSettingsStore::erase(const QString &key)
{
    m_changed.remove(key);
    m_erased.insert(key);
    m_writing.start();
}

bool FileSettingsStore::synchronize()
{
    if (!hasChanges()) {
        const bool fresh = refresh();
        if (!fresh || !hasChanges()) {
            return fresh;
        }
    }
    if (!makePrivateFolder(QFileInfo(m_path).absolutePath())) {
        return failed(qt_error_string(errno));
    }
    QLockFile lock(m_path + QStringLiteral(".lock"));
    if (!lock.tryLock(lockTimeoutMilliseconds)) {
        return failed(lock.error() == QLockFile::LockFailedError
                ? QStringLiteral("another program holds its lock")
                : QStringLiteral("its folder cannot be written"));
    }
    return refresh() && write();
}

bool FileSettingsStore::write()
{
    QVariantMap merged = m_saved;
    for (const QString &key : std::as_const(m_erased)) {
        merged.remove(key);
    }
    merged.insert(m_changed);
    const QString fresh = m_path + QStringLiteral(".new");
    QString reason;
    if (!writeSettings(fresh, merged, &reason)) {
        QFile::remove(fresh);
        return failed(reason);
    }
    if (std::optional<BrevokError> error; !renameDurably(fresh, m_path, &error)) {
        return failed(error->description);
    }
    m_stamp = stampOf(m_path);
    m_saved = merged;
    m_changed.clear();
    m_erased.clear();
    m_problem.clear();
    return true;
}

// One line tells of a full disk, not one for every value that is kept meanwhile.
bool FileSettingsStore::failed(const QString &reason)
{
    if (m_problem.isEmpty()) {
        logLine(QStringLiteral("The settings cannot be saved in %1: %2").arg(m_path, reason));
    }
    m_problem = reason;
    return false;
}

// Takes in what other programs wrote. @return false when the file may hold values that could not be read now
bool FileSettingsStore::refresh()
{
    PrivateFile file = readPrivateFile(m_path, m_stamp, sizeLimit);
    if (file.state == PrivateFile::State::Read) {
        QString shortage;
        if (std::optional<QVariantMap> values = settingsValues(file.contents, &shortage)) {
            m_saved = std::move(*values);
            m_stamp = file.stamp;
            return true;
        }
        if (!shortage.isEmpty()) {
            return failed(shortage);
        }
        file.state = PrivateFile::State::Unusable;
        file.reason = QStringLiteral("broken");
    }
    switch (file.state) {
    case PrivateFile::State::Unusable:
        keepValues();
        return moveAside(file.reason);
    case PrivateFile::State::Missing:
        keepValues();
        return true;
    case PrivateFile::State::Failed:
        return failed(file.reason);
    case PrivateFile::State::Read:
    case PrivateFile::State::Unchanged:
        break;
    }
    return true;
}

// The file with the values known so far is gone: they are written again with the next change.
void FileSettingsStore::keepValues()
{
    for (auto value = m_saved.cbegin(); value != m_saved.cend(); ++value) {
        if (!m_changed.contains(value.key()) && !m_erased.contains(value.key())) {
            m_changed.insert(value.key(), value.value());
        }
    }
    m_saved.clear();
    m_stamp = {};
}

bool FileSettingsStore::moveAside(const QString &reason)
{
    const QString aside = nameAside(m_path, QStringLiteral("unreadable"));
    if (std::rename(QFile::encodeName(m_path).constData(), QFile::encodeName(aside).constData()) != 0) {
        return failed(QStringLiteral("what stands there cannot be read (%1)").arg(reason));
    }
    logLine(QStringLiteral("The settings in %1 cannot be read (%2); they were kept as %3")
                .arg(m_path, reason, aside));
    return true;
}

void FileSettingsStore::setAside(const QString &key, const QString &reason)
{
    const QVariant value = storedValue(key);
    if (!value.isValid()) {
        return;
    }
    constexpr qsizetype nameLimit = 100;
    const QString name = QString::fromLatin1(QUrl::toPercentEncoding(key)).left(nameLimit);
    const QString aside = nameAside(m_path + u'.' + name, QStringLiteral("unusable"));
    std::optional<BrevokError> error;
    makePrivateFolder(QFileInfo(m_path).absolutePath());
    const bool kept = writePrivateFile(aside, rawBytes(value), &error);
    logLine(QStringLiteral("What the settings hold under \"%1\" cannot be used (%2); %3")
                .arg(key, reason,
                    kept ? QStringLiteral("it was kept as %1").arg(aside)
                         : QStringLiteral("it could not be kept: %1").arg(error->description)));
    erase(key);
}

} // namespace brevok
