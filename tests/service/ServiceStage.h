// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/HttpServiceClient.h"
#include "service/NetworkFactory.h"
#include "support/servers/FaultServer.h"

#include <QEventLoop>
#include <QTest>
#include <QTimer>

namespace brevok::testing {

using namespace Qt::StringLiterals;

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

/// What @p start hands to the function that it gets, once and later than the call. Nothing is polled: some
/// tests send a thousand requests.
template <typename Result>
Result awaited(const std::function<void(std::function<void(const Result &)>)> &start)
{
    QEventLoop loop;
    QList<Result> results;
    start([&](const Result &result) {
        results.append(result);
        loop.quit();
    });
    [&] {
        QVERIFY(results.isEmpty());
        QTimer::singleShot(patient, &loop, &QEventLoop::quit);
        loop.exec();
        QCOMPARE(results.size(), 1);
    }();
    return results.value(0);
}

/// A service, whose list is empty unless a test says otherwise, and the program's side of it.
struct ServiceStage {
    explicit ServiceStage(
        const TestIdentity &identity = TestCertificates::shared().valid(), int timeoutMs = patient)
        : server(identity)
        , network({.baseUrl = server.url(),
              .extraAuthorities = TestCertificates::shared().authorities(),
              .reachabilityHost = QStringLiteral("public.example"),
              .requestTimeoutMs = timeoutMs})
    {
        server.on(u"/list"_s, Response::ok("[]"));
    }

    FaultServer server;
    NetworkFactory network;
    QString sessionId;
    ServiceLimits limits;

    ServiceReply send(const ExchangeRequest &request)
    {
        QObject context;
        return awaited<ServiceReply>([&](auto handler) { network.send(request, &context, handler); });
    }
    [[nodiscard]] HttpServiceClient client()
    {
        return {network, [this] { return sessionId; }, [] { return true; }, limits};
    }
    ServiceReply list(const QString &path, const Validator &known = {})
    {
        HttpServiceClient asking = client();
        QObject context;
        return awaited<ServiceReply>([&](auto handler) { asking.getList(path, known, &context, handler); });
    }
    ServiceReply file(const QUrl &url, const Validator &known = {})
    {
        HttpServiceClient asking = client();
        QObject context;
        return awaited<ServiceReply>([&](auto handler) { asking.fetchFile(url, known, &context, handler); });
    }
    DownloadResult download(
        const QUrl &url, const QString &destination, qint64 size, const QByteArray &checksum = {})
    {
        HttpServiceClient asking = client();
        QObject context;
        return awaited<DownloadResult>([&](auto handler) {
            asking.download(
                {url, destination, size, checksum}, &context,
                [this](qint64 done, qint64) { progress.append(done); }, handler);
        });
    }
    QList<qint64> progress;
};

} // namespace brevok::testing
