// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/WorkJournal.h"

#include "platform/linux/files/SafePath.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr auto prefix = "work-"_L1;
constexpr qint64 longest = qint64(64) * 1024;

/// Another one after each start of the system.
QString bootId()
{
    QFile file(u"/proc/sys/kernel/random/boot_id"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readLine(100).trimmed()) : QString();
}

} // namespace

QString WorkJournal::begin(const QString &target, bool removal, bool fresh) const
{
    QString id = prefix + QUuid::createUuid().toString(QUuid::Id128);
    const QJsonObject entry{
        {u"target"_s, target}, {u"removal"_s, removal}, {u"fresh"_s, fresh}, {u"boot"_s, bootId()}};
    const QByteArray text = QJsonDocument(entry).toJson(QJsonDocument::Compact);
    const FileDescriptor folder = safepath::openFolder(QFile::encodeName(m_folder));
    if (!folder) {
        return {};
    }
    FileDescriptor file =
        safepath::openBeneath(folder.get(), id.toLatin1(), O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
    if (file && safepath::writeAll(file.get(), text.constData(), static_cast<size_t>(text.size()))
        && ::fsync(file.get()) == 0 && file.close() && ::fsync(folder.get()) == 0) {
        return id;
    }
    const int code = errno;
    ::unlinkat(folder.get(), id.toLatin1().constData(), 0);
    errno = code;
    return {};
}

void WorkJournal::end(const QString &id) const
{
    const FileDescriptor folder = safepath::openFolder(QFile::encodeName(m_folder));
    // An entry that came back after a power cut would have a new item taken for half of one.
    if (folder && ::unlinkat(folder.get(), id.toLatin1().constData(), 0) == 0) {
        ::fsync(folder.get());
    }
}

QList<WorkJournal::Entry> WorkJournal::entries() const
{
    QList<Entry> result;
    const FileDescriptor folder = safepath::openFolder(QFile::encodeName(m_folder));
    const QByteArrayList names =
        folder ? safepath::names(folder.get()).value_or(QByteArrayList()) : QByteArrayList();
    for (const QByteArray &name : names) {
        if (!name.startsWith(QByteArray(prefix.data(), prefix.size()))) {
            continue;
        }
        QFile file(m_folder + u'/' + QString::fromLatin1(name));
        const QJsonObject entry = file.open(QIODevice::ReadOnly)
            ? QJsonDocument::fromJson(file.read(longest)).object()
            : QJsonObject();
        result.append({.id = QString::fromLatin1(name),
            .target = entry.value(u"target"_s).toString(),
            .removal = entry.value(u"removal"_s).toBool(),
            .fresh = entry.value(u"fresh"_s).toBool(),
            .rebooted = entry.value(u"boot"_s).toString() != bootId()});
    }
    return result;
}

} // namespace brevok
