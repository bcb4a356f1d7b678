// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/HttpServiceClient.h"
#include "service/NetworkFactory.h"
#include "support/servers/FaultServer.h"

#include <QTest>

Q_DECLARE_METATYPE(brevok::testing::Response)

namespace brevok::testing {

inline constexpr int patient = 30000;
inline constexpr int shortTimeout = 250;

/// Text that hardly compresses, so that a compressed body has a middle to be cut in.
inline QByteArray sampleBody(qsizetype size = 100000)
{
    QByteArray body;
    for (quint32 seed = 7; body.size() < size; seed = seed * 1664525 + 1013904223) {
        body += QByteArray::number(seed >> 8, 36);
    }
    return body.first(size);
}

/// A service, and the program's side of it.
struct Stage {
    explicit Stage(const TestIdentity &identity = TestCertificates::shared().valid(), int timeoutMs = patient)
        : server(identity)
        , network({.baseUrl = server.url(),
              .extraAuthorities = TestCertificates::shared().authorities(),
              .reachabilityHost = {},
              .requestTimeoutMs = timeoutMs})
    {
    }

    FaultServer server;
    NetworkFactory network;
    QString sessionId;
    ServiceLimits limits;

    ServiceReply list(const QString &path)
    {
        return get(
            [&](auto &client, auto *context, auto handler) { client.getList(path, context, handler); });
    }
    ServiceReply file(const QUrl &url)
    {
        return get(
            [&](auto &client, auto *context, auto handler) { client.fetchFile(url, context, handler); });
    }
    DownloadResult download(
        const QUrl &url, const QString &destination, qint64 size, const QByteArray &checksum = {})
    {
        HttpServiceClient client(
            network, [this] { return sessionId; }, [] { return true; }, limits);
        QList<DownloadResult> results;
        QObject context;
        client.download(
            {url, destination, size, checksum}, &context,
            [this](qint64 done, qint64) { progress.append(done); },
            [&results](const DownloadResult &result) { results.append(result); });
        [&] {
            QTRY_COMPARE_WITH_TIMEOUT(results.size(), 1, patient);
        }();
        return results.value(0);
    }
    QList<qint64> progress;

private:
    ServiceReply get(
        const std::function<void(ServiceClient &, QObject *, ServiceClient::ReplyHandler)> &start)
    {
        HttpServiceClient client(
            network, [this] { return sessionId; }, [] { return true; }, limits);
        QList<ServiceReply> replies;
        QObject context;
        start(client, &context, [&replies](const ServiceReply &reply) { replies.append(reply); });
        [&] {
            QVERIFY(replies.isEmpty());
            QTRY_COMPARE_WITH_TIMEOUT(replies.size(), 1, patient);
        }();
        return replies.value(0);
    }
};

} // namespace brevok::testing
