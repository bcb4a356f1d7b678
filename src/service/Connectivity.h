// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/RouteLookup.h"
#include "service/ServiceClient.h"

#include <QUrl>

#include <functional>

namespace brevok {

class NetworkFactory;

/// Tells whether the network and the service can be reached, and writes a diagnosis for the log. Main thread;
/// nothing here blocks it. The collaborators outlive it.
class Connectivity final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Connectivity)

public:
    Connectivity(NetworkFactory &network, const RouteLookup &routes, QObject *parent = nullptr);
    ~Connectivity() override;

    /// Whether there is a way to the well-known public host that needs no further step. Asks the routing
    /// table only; quick.
    [[nodiscard]] bool checkNetworkReachability() const;

    /// Whether the web service itself answers a GET and then a POST of its base URL, each with status 200 and
    /// a body. @p done is called once, later, on the main thread, and not at all when @p context is gone by
    /// then. Each request may take the time-out of requests.
    void checkAzureReachability(QObject *context, std::function<void(bool)> done);

    /// Writes a diagnosis of the way to @p url to the log: the address, the system's flags, a GET of @p url
    /// and a POST to the service's base URL. @p done as above, after the last line.
    void logConectivityTo(const QUrl &url, int port, QObject *context, std::function<void()> done);

private:
    struct Diagnosis;

    void send(const QUrl &url, const QByteArray &method, ServiceClient::ReplyHandler handler);
    void logFlags(const Diagnosis &diagnosis);
    void logRequests(const Diagnosis &diagnosis);
    static void logAnswer(const QString &method, const ServiceReply &answer);

    NetworkFactory &m_network;
    const RouteLookup &m_routes;
};

/// The one phrase that a diagnosis describes flags with.
[[nodiscard]] QString reachabilityPhrase(ReachabilityFlags flags);

} // namespace brevok
