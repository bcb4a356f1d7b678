// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/HttpTransfers.h"
#include "service/ServiceClient.h"

#include <QElapsedTimer>
#include <QPointer>

namespace brevok {

class NetworkFactory;

/// What a request has to do with the cookies that the service sets.
enum class CookieRule { None, Take, TakeAndSend };

/// What is to be sent, and how it travels. NetworkFactory::request() makes one.
struct ExchangeRequest : HttpRequest {
    CookieRule cookies = CookieRule::None;
    bool logsChallenges = false; ///< of the servers it goes to
};

[[nodiscard]] bool sameOrigin(const QUrl &a, const QUrl &b);

/// One request with all its hops, five redirects at most: a GET is led anywhere by https, another method
/// nowhere else than it was sent to. See NetworkFactory::send(). Deletes itself at the end.
class Exchange final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Exchange)

public:
    struct Asker {
        QPointer<QObject> context; ///< without it the exchange is given up
        HttpTransfers::Progress progress;
        ServiceClient::ReplyHandler handler;
    };

    Exchange(NetworkFactory &network, ExchangeRequest request, Asker asker);
    ~Exchange() override;

private:
    void startHop();
    void hopEnded(const HttpReply &reply);
    void follow(const HttpReply &reply);
    void settle(const HttpReply &reply, const std::optional<BrevokError> &error);

    NetworkFactory &m_network;
    const QUrl m_originalUrl;
    ExchangeRequest m_request; ///< of the current hop
    Asker m_asker;
    QElapsedTimer m_age;
    quint64 m_transfer = 0;
    int m_redirects = 0;
};

} // namespace brevok
