// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QByteArray>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <optional>

namespace brevok {

class NetworkFactory;

/// A request as it was first built, ready to be sent again.
struct SessionRequest {
    QNetworkRequest request;
    QByteArray method;
    QByteArray body;
};

/// The head of a reply.
struct SessionResponse {
    QUrl url;
    int statusCode = 0;
    QList<QNetworkReply::RawHeaderPair> headerFields;

    [[nodiscard]] QByteArray header(const QByteArray &name) const;
};

/// One request in flight: it starts with its creation and settles exactly once, with didFinishLoading() or
/// didFailWithError(). Main thread.
class BrevokSessionConnection final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokSessionConnection)

public:
    /// @p sessionAction is the session action that the request performs.
    BrevokSessionConnection(
        NetworkFactory &network, const SessionRequest &request, int sessionAction, QObject *parent = nullptr);
    ~BrevokSessionConnection() override;

    QByteArray responseData; ///< the body so far; decompressed once loading finished
    std::optional<SessionResponse> responseHTTP;
    std::optional<BrevokError> responseError;
    int status;
    int errorCount = 0; ///< how many times the request was sent again after a time-out
    SessionRequest originalRequest2;

Q_SIGNALS:
    void didFinishLoading(brevok::BrevokSessionConnection *connection);
    void didFailWithError(brevok::BrevokSessionConnection *connection, const brevok::BrevokError &error);

private:
    void didRedirect(const QUrl &target);
    void didReceiveResponse();
    void didReceiveData();
    void didEnd();
    void stop(const BrevokError &error);

    QNetworkReply *m_reply;
    bool m_settled = false;
};

} // namespace brevok
