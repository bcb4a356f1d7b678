// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/HttpServiceClient.h"

#include "service/ArchiveDownload.h"
#include "service/NetworkFactory.h"
#include "service/ReplyCollector.h"
#include "service/ReplyDecoding.h"

namespace brevok {

HttpServiceClient::HttpServiceClient(NetworkFactory &network, std::function<QString()> sessionId,
    std::function<bool()> reachable, Limits limits, QObject *parent)
    : QObject(parent)
    , m_network(network)
    , m_sessionId(std::move(sessionId))
    , m_reachable(std::move(reachable))
    , m_limits(limits)
{
}

HttpServiceClient::HttpServiceClient(NetworkFactory &network, std::function<QString()> sessionId,
    std::function<bool()> reachable, QObject *parent)
    : HttpServiceClient(network, std::move(sessionId), std::move(reachable), Limits{}, parent)
{
}

HttpServiceClient::~HttpServiceClient() = default;

bool HttpServiceClient::checkNetworkReachability()
{
    return m_reachable();
}

void HttpServiceClient::getList(const QString &path, QObject *context, ReplyHandler handler)
{
    QNetworkRequest request = m_network.request(m_network.configuration().url(path));
    request.setRawHeader(versionHeader, versionHeaderValue);
    if (const QString sessionId = m_sessionId(); !sessionId.isEmpty()) {
        request.setRawHeader("Cookie", "SessionId=" + sessionId.toUtf8());
    }
    request.setAttribute(NetworkFactory::storedCookies, true);
    new ReplyCollector(
        m_network.send(request, "GET"), m_limits.listBytes, 0, context, std::move(handler), this);
}

void HttpServiceClient::fetchFile(const QUrl &url, QObject *context, ReplyHandler handler)
{
    QNetworkRequest request = m_network.request(url);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    new ReplyCollector(m_network.send(request, "GET"), m_limits.fileBytes, m_limits.fileMs, context,
        std::move(handler), this);
}

void HttpServiceClient::download(const QUrl &url, const QString &destination, qint64 expectedSize,
    QObject *context, ProgressHandler progress, DownloadHandler handler)
{
    QStringList inUse;
    const QList<ArchiveDownload *> others = findChildren<ArchiveDownload *>(Qt::FindDirectChildrenOnly);
    for (const ArchiveDownload *other : others) {
        inUse.append(other->temporaryFile());
    }
    QNetworkRequest request = m_network.request(url);
    // An archive's host is none of the service's business: it neither gets nor gives cookies.
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    new ArchiveDownload(m_network.send(request, "GET"),
        {.destination = destination,
            .expectedSize = expectedSize,
            .context = context,
            .progress = std::move(progress),
            .handler = std::move(handler)},
        inUse, this);
}

} // namespace brevok
