// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/ServiceClient.h"

#include <algorithm>

namespace brevok {

QUrl ServiceConfiguration::url(const QString &path) const
{
    QUrl url = baseUrl;
    QString folder = baseUrl.path();
    while (folder.endsWith(u'/')) {
        folder.chop(1);
    }
    url.setPath(folder + path);
    return url;
}

QByteArray ServiceReply::header(const QByteArray &name) const
{
    const auto found = std::find_if(headers.cbegin(), headers.cend(),
        [&name](const auto &header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; });
    return found == headers.cend() ? QByteArray() : found->second;
}

} // namespace brevok
