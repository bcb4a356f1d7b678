// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/Exchange.h"

namespace brevok {

class NetworkFactory;

/// A request as it was first built, ready to be sent again.
using SessionRequest = ExchangeRequest;

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

    QByteArray responseData; ///< the body, once loading finished
    std::optional<ServiceReply> responseHTTP; ///< its head
    std::optional<BrevokError> responseError;
    int status;
    int errorCount = 0; ///< how many times the request was sent again after a time-out
    SessionRequest originalRequest2;

Q_SIGNALS:
    void didFinishLoading(brevok::BrevokSessionConnection *connection);
    void didFailWithError(brevok::BrevokSessionConnection *connection, const brevok::BrevokError &error);

private:
    void didEnd(const ServiceReply &reply);
};

} // namespace brevok
