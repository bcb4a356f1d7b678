// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/RouteLookup.h"

#include <memory>

namespace brevok {

enum class NetworkStatus { NotReachable = 0, Reachable = 1 };

/// Whether one host or network can be reached, now and whenever the routes change. Main thread. The lookup
/// outlives it.
class Reachability final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Reachability)

public:
    /// Each returns nothing when the system has no such reference.
    [[nodiscard]] static std::unique_ptr<Reachability> reachabilityWithHostName(
        RouteLookup &lookup, const QString &hostName);
    [[nodiscard]] static std::unique_ptr<Reachability> reachabilityWithAddress(
        RouteLookup &lookup, const InternetAddress &address);
    [[nodiscard]] static std::unique_ptr<Reachability> reachabilityForInternetConnection(RouteLookup &lookup);
    [[nodiscard]] static std::unique_ptr<Reachability> reachabilityForLocalWiFi(RouteLookup &lookup);
    ~Reachability() override;

    /// @return whether changes are announced from now on
    bool startNotifier();
    void stopNotifier();

    /// Not reachable also when the system cannot tell.
    [[nodiscard]] NetworkStatus currentReachabilityStatus() const;
    /// Whether the link needs a further step (dial-up, VPN) first; no when the system cannot tell.
    [[nodiscard]] bool connectionRequired() const;

    /// What the flags mean; each logs them first.
    [[nodiscard]] static NetworkStatus networkStatusForFlags(ReachabilityFlags flags);
    [[nodiscard]] static NetworkStatus localWiFiStatusForFlags(ReachabilityFlags flags);

Q_SIGNALS:
    /// The notification "kNetworkReachabilityChangedNotification" and its object.
    void networkReachabilityChanged(brevok::Reachability *object);

private:
    Reachability(RouteLookup &lookup, QString hostName, InternetAddress address, bool localWiFi);

    [[nodiscard]] std::optional<ReachabilityFlags> flags() const;

    RouteLookup &m_lookup;
    QString m_hostName; ///< empty: the address counts
    InternetAddress m_address;
    bool m_alwaysReturnLocalWiFiStatus;
    QMetaObject::Connection m_notifier;
};

} // namespace brevok
