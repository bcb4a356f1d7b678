// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/WorkJournal.h"

#include "platform/linux/SafePath.h"

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
constexpr auto installing = "install"_L1;
constexpr qint64 longest = qint64(64) * 1024;

} // namespace

QString WorkJournal::begin(Kind kind, const QString &target) const
{
    QString id = prefix + QUuid::createUuid().toString(QUuid::Id128);
    const QByteArray text = QJsonDocument(
        QJsonObject{{u"kind"_s, kind == Kind::Install ? QString(installing) : u"removal"_s},
            {u"target"_s,
                target}}).toJson(QJsonDocument::Compact);
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
    QFile::remove(m_folder + u'/' + id);
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
        result.append({QString::fromLatin1(name),
            entry.value(u"kind"_s).toString() == installing ? Kind::Install : Kind::Removal,
            entry.value(u"target"_s).toString()});
    }
    return result;
}

} // namespace brevok
