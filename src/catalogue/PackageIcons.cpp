// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PackageIcons.h"

#include "foundation/Paths.h"
#include "platform/RegularFile.h"
#include "service/ServiceClient.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QUrl>

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 largestFile = qint64{8} * 1024 * 1024;
constexpr int downloadsAtOnce = 8;

} // namespace

QString iconFileName(const QString &address)
{
    const QString name = QUrl(address).fileName(QUrl::FullyDecoded);
    // The data folder holds a folder of archives for every host version.
    const bool folderOfArchives =
        std::all_of(name.cbegin(), name.cend(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    return isPlainFileName(name) && !folderOfArchives ? name : QString();
}

PackageIcons::PackageIcons(ServiceClient &service, QString folder, ImageTest formsImage, QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_folder(std::move(folder))
    , m_formsImage(formsImage ? std::move(formsImage) : ImageTest(looksLikeImage))
{
}

PackageIcons::~PackageIcons() = default;

void PackageIcons::ensureIcon(const QString &package)
{
    if (!m_icons.contains(package)) {
        m_icons.insert(package, {});
    }
}

bool PackageIcons::load(const QString &package, const QString &path)
{
    // The path may name anything, also a device: it comes from the store or from the service.
    const std::optional<QByteArray> data = readRegularFile(path, largestFile);
    if (!data || data->isEmpty() || !m_formsImage(*data)) {
        return false;
    }
    m_icons.insert(package, {*data});
    return true;
}

void PackageIcons::download(const QString &package, const QString &address)
{
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
        m_service.fetchFile(url, this, [this, package, address](const ServiceReply &reply) {
            --m_running;
            if (!reply.error && !reply.body.isEmpty()) {
                take(package, address, reply.body);
            }
            startDownloads();
            Q_EMIT downloadEnded();
        });
    }
}

void PackageIcons::take(const QString &package, const QString &address, const QByteArray &data)
{
    if (m_addresses.value(package) != address) {
        return;
    }
    if (m_formsImage(data)) {
        m_icons.insert(package, {data});
        Q_EMIT iconChanged();
    }
    if (const QString path = storedFile(address, data); !path.isEmpty()) {
        Q_EMIT cached(package, path);
    }
}

QString PackageIcons::storedFile(const QString &address, const QByteArray &data) const
{
    const QString name = iconFileName(address);
    if (name.isEmpty() || !QDir().mkpath(m_folder) || !QFileInfo(m_folder).isWritable()) {
        return {};
    }
    QString path = m_folder + u'/' + name;
    QSaveFile file(path);
    const bool written = file.open(QIODevice::WriteOnly) && file.write(data) == data.size() && file.commit();
    return written ? path : QString();
}

bool looksLikeImage(const QByteArray &data)
{
    const auto begins = [&data](QByteArrayView magic, qsizetype at = 0) {
        return data.size() >= at + magic.size() && QByteArrayView(data).sliced(at, magic.size()) == magic;
    };
    if (begins("\x89PNG\r\n\x1a\n") || begins("\xff\xd8\xff") || begins("GIF87a") || begins("GIF89a")
        || begins("BM") || begins(QByteArrayView("II*\0", 4)) || begins(QByteArrayView("MM\0*", 4))
        || begins("icns") || (begins("RIFF") && begins("WEBP", 8))) {
        return true;
    }
    QByteArrayView text = QByteArrayView(data).first(std::min(data.size(), qsizetype(4096)));
    if (text.startsWith("\xef\xbb\xbf")) {
        text = text.sliced(3);
    }
    text = text.trimmed();
    return text.startsWith("<svg") || (text.startsWith("<?xml") && text.contains("<svg"));
}

} // namespace brevok
