// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/ServiceClient.h"

namespace brevok {

struct ExchangeRequest;
class NetworkFactory;

/// The limits of other rooms' requests.
struct ServiceLimits {
    qint64 listBytes = 256LL * 1024 * 1024;
    qint64 fileBytes = 8LL * 1024 * 1024;
    int fileMs = 60000; ///< for all of a small file
};

/// The requests of other rooms, over HTTPS. Main thread.
class HttpServiceClient final : public QObject, public ServiceClient {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HttpServiceClient)

public:
    /// @p sessionId gives the session id, empty when signed out; @p reachable answers
    /// checkNetworkReachability().
    HttpServiceClient(NetworkFactory &network, std::function<QString()> sessionId,
        std::function<bool()> reachable, ServiceLimits limits = {}, QObject *parent = nullptr);
    ~HttpServiceClient() override;

    [[nodiscard]] bool checkNetworkReachability() override;
    void getList(
        const QString &path, const Validator &known, QObject *context, ReplyHandler handler) override;
    void fetchFile(const QUrl &url, const Validator &known, QObject *context, ReplyHandler handler) override;
    void download(const DownloadOrder &order, QObject *context, ProgressHandler progress,
        DownloadHandler handler) override;

private:
    void sendIfOther(ExchangeRequest request, const QString &sessionId, const Validator &known,
        QObject *context, ReplyHandler handler);

    NetworkFactory &m_network;
    std::function<QString()> m_sessionId;
    std::function<bool()> m_reachable;
    ServiceLimits m_limits;
};

} // namespace brevok
