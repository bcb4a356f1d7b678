// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "updates/UpdateSource.h"

#include "service/ServiceClient.h"
#include "updates/PackageSignature.h"

#include <QSysInfo>

namespace brevok {

using namespace Qt::StringLiterals;

UpdateSource updateSourceOfBuild(const ServiceConfiguration &service)
{
    const QString feed = QStringLiteral(BREVOK_UPDATE_FEED_URL);
    return {.feed = feed.isEmpty() ? service.url(u"/appcast.xml"_s) : QUrl(feed, QUrl::StrictMode),
        .publicKey = publicKeyFrom(QByteArrayLiteral(BREVOK_UPDATE_PUBLIC_KEY)),
        .channel = QStringLiteral(BREVOK_UPDATE_CHANNEL)};
}

QString systemVersion()
{
    const QString version = QSysInfo::productVersion();
    return version == "unknown"_L1 ? QString() : version;
}

} // namespace brevok
