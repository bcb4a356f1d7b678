// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PackageIcons.h"

#include "foundation/BoundedWork.h"
#include "foundation/Paths.h"
#include "platform/RegularFile.h"
#include "platform/StandardFolders.h"
#include "service/ServiceClient.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QPointer>
#include <QSaveFile>
#include <QUrl>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestFile = qint64{8} * 1024 * 1024;
constexpr int downloadsAtOnce = 8;

bool writeIcon(const QString &folder, const QString &name, const QByteArray &data)
{
    if (!QDir().mkpath(folder) || !QFileInfo(folder).isWritable()) {
        return false;
    }
    QSaveFile file(folder + u'/' + name);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit();
}

// The path may name anything, also a device or a place on a dead mount: it comes from the store or from the
// service.
QByteArray readStored(const QString &path)
{
    const auto read = [path](Pulse &) {
        return readRegularFile(path, largestFile).value_or(QByteArray());
    };
    return bounded<QByteArray>(deletingLastPathComponent(path), read).value_or(QByteArray());
}

} // namespace

QString iconFileName(const QString &address)
{
    const QString name = QUrl(address).fileName(QUrl::FullyDecoded);
    const bool harmless = isPlainFileName(name) && isPrintable(name) && !StandardFolders::isReserved(name);
    return harmless ? name : QString();
}

PackageIcons::PackageIcons(ServiceClient &service, QString folder, QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_folder(std::move(folder))
{
}

PackageIcons::~PackageIcons() = default;

void PackageIcons::ensureIcon(const QString &package)
{
    if (!m_icons.contains(package)) {
        m_icons.insert(package, {});
    }
}

void PackageIcons::load(const QString &package, const QString &path, const QString &address)
{
    ensureIcon(package);
    m_turns.insert(package, ++m_turn);
    m_unread.append({package, path, address, m_turn});
    ++m_reading;
    if (m_unread.size() == 1) {
        onMain(this, [this] { readUnread(); });
    }
}

void PackageIcons::readUnread()
{
    m_disk.add([self = QPointer<PackageIcons>(this), icons = std::exchange(m_unread, {})]() mutable {
        for (StoredIcon &icon : icons) {
            const QByteArray data = readStored(icon.path);
            icon.data = looksLikeImage(data) ? data : QByteArray();
        }
        onMain(QCoreApplication::instance(), [self, icons] {
            if (self) {
                self->take(icons);
            }
        });
    });
}

void PackageIcons::take(const QList<StoredIcon> &icons)
{
    m_reading -= icons.size();
    for (const StoredIcon &icon : icons) {
        if (m_turns.value(icon.package) != icon.turn) {
            continue;
        }
        if (!icon.data.isEmpty()) {
            m_icons.insert(icon.package, {icon.data});
        } else if (!icon.address.isEmpty()) {
            download(icon.package, icon.address);
        }
    }
    Q_EMIT iconChanged();
    Q_EMIT downloadEnded();
}

void PackageIcons::download(const QString &package, const QString &address)
{
    m_turns.insert(package, ++m_turn);
    m_addresses.insert(package, address);
    if (!m_queued.contains(package)) {
        m_queued.insert(package);
        m_waiting.enqueue(package);
    }
    startDownloads();
}

void PackageIcons::startDownloads()
{
    while (m_running < downloadsAtOnce && !m_waiting.isEmpty()) {
        const QString package = m_waiting.dequeue();
        m_queued.remove(package);
        const QString address = m_addresses.value(package);
        const QUrl url(address);
        if (!url.isValid() || (url.scheme() != "https"_L1 && url.scheme() != "http"_L1)) {
            continue;
        }
        ++m_running;
        const PackageIcon known = m_icons.value(package);
        m_service.fetchFile(
            url, known.validator, this, [this, package, address, known](const ServiceReply &reply) {
                const PackageIcon icon = reply.notModified ? known : PackageIcon{reply.body, reply.validator};
                if (!reply.error && !icon.data.isEmpty() && m_addresses.value(package) == address) {
                    show(package, icon);
                    store(package, address, icon.data);
                } else {
                    downloadEnds();
                }
            });
    }
}

void PackageIcons::show(const QString &package, const PackageIcon &icon)
{
    if (looksLikeImage(icon.data)) {
        m_icons.insert(package, icon);
        Q_EMIT iconChanged();
    }
}

void PackageIcons::store(const QString &package, const QString &address, const QByteArray &data)
{
    const QString name = iconFileName(address);
    if (name.isEmpty()) {
        downloadEnds();
        return;
    }
    m_disk.add([icons = QPointer<PackageIcons>(this), package, address, data, name, folder = m_folder] {
        const bool written = writeIcon(folder, name, data);
        onMain(QCoreApplication::instance(), [icons, package, address, written, path = folder + u'/' + name] {
            if (!icons) {
                return;
            }
            if (written && icons->m_addresses.value(package) == address) {
                Q_EMIT icons->cached(package, path);
            }
            icons->downloadEnds();
        });
    });
}

void PackageIcons::downloadEnds()
{
    --m_running;
    startDownloads();
    Q_EMIT downloadEnded();
}

bool looksLikeImage(const QByteArray &data)
{
    return QMimeDatabase().mimeTypeForData(data).name().startsWith("image/"_L1);
}

} // namespace brevok
