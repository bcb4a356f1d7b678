// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/InternetAddress.h"

#include <QObject>
#include <QString>

#include <optional>

namespace brevok {

/// What the operating system says of the way to a host; bit values as its reachability service defines them.
enum ReachabilityFlag : quint32 {
    TransientConnection = 1,
    Reachable = 2,
    ConnectionRequired = 4,
    ConnectionOnTraffic = 8,
    InterventionRequired = 16,
    ConnectionOnDemand = 32,
    IsLocalAddress = 65536,
    IsDirect = 131072,
};
using ReachabilityFlags = quint32;

/// Asks the routing table whether and how a host can be reached. It never resolves a name, never sends a
/// packet and never blocks. Any thread, but for the notifier (main thread).
class RouteLookup : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RouteLookup)

public:
    explicit RouteLookup(QObject *parent = nullptr);
    ~RouteLookup() override;

    /// The flags for a host name: for an address in text form and for "localhost" those of the address, for
    /// any other name those of the way to the internet. Nothing when the system cannot tell.
    [[nodiscard]] virtual std::optional<ReachabilityFlags> flagsForHost(const QString &host) const = 0;

    /// The flags for an address; the zero address stands for the internet as such.
    [[nodiscard]] virtual std::optional<ReachabilityFlags> flagsForAddress(
        const InternetAddress &address) const = 0;

    /// From now on routesChanged() is emitted when routes come or go. @return whether that could be set up.
    virtual bool startNotifier() = 0;
    virtual void stopNotifier() = 0;

Q_SIGNALS:
    void routesChanged();
};

} // namespace brevok
