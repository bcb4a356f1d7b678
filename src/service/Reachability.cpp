// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/Reachability.h"

#include "foundation/Log.h"

#include <QVariant>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr auto linkLocalNetwork = "169.254.0.0";
// How many notifiers share a lookup: its own notifier runs as long as one of them does.
constexpr auto notifiersProperty = "reachabilityNotifiers";

int addNotifier(RouteLookup &lookup, int difference)
{
    const int notifiers = lookup.property(notifiersProperty).toInt() + difference;
    lookup.setProperty(notifiersProperty, notifiers);
    return notifiers;
}

bool has(ReachabilityFlags flags, ReachabilityFlag flag)
{
    return (flags & flag) != 0;
}

void logFlags(ReachabilityFlags flags, const char *operation)
{
    const auto mark = [flags](ReachabilityFlag flag, char letter) {
        return has(flags, flag) ? letter : '-';
    };
    logLine(QString::asprintf("Reachability Flag Status: %c %c%c%c%c%c%c%c %s\n", mark(Reachable, 'R'),
        mark(TransientConnection, 't'), mark(ConnectionRequired, 'c'), mark(ConnectionOnTraffic, 'C'),
        mark(InterventionRequired, 'i'), mark(ConnectionOnDemand, 'D'), mark(IsLocalAddress, 'l'),
        mark(IsDirect, 'd'), operation));
}

} // namespace

Reachability::Reachability(RouteLookup &lookup, QString hostName, InternetAddress address, bool localWiFi)
    : m_lookup(lookup)
    , m_hostName(std::move(hostName))
    , m_address(std::move(address))
    , m_alwaysReturnLocalWiFiStatus(localWiFi)
{
}

Reachability::~Reachability()
{
    stopNotifier();
}

std::unique_ptr<Reachability> Reachability::reachabilityWithHostName(
    RouteLookup &lookup, const QString &hostName)
{
    if (hostName.isEmpty()) {
        return nullptr;
    }
    return std::unique_ptr<Reachability>(new Reachability(lookup, hostName, {}, false));
}

std::unique_ptr<Reachability> Reachability::reachabilityWithAddress(
    RouteLookup &lookup, const InternetAddress &address)
{
    if (address.isNull()) {
        return nullptr;
    }
    return std::unique_ptr<Reachability>(new Reachability(lookup, {}, address, false));
}

std::unique_ptr<Reachability> Reachability::reachabilityForInternetConnection(RouteLookup &lookup)
{
    return reachabilityWithAddress(lookup, InternetAddress::fromText(QStringLiteral("0.0.0.0")));
}

std::unique_ptr<Reachability> Reachability::reachabilityForLocalWiFi(RouteLookup &lookup)
{
    return std::unique_ptr<Reachability>(
        new Reachability(lookup, {}, InternetAddress::fromText(QLatin1StringView(linkLocalNetwork)), true));
}

bool Reachability::startNotifier()
{
    if (m_notifier) {
        return true;
    }
    if (!m_lookup.startNotifier()) {
        return false;
    }
    addNotifier(m_lookup, 1);
    m_notifier = connect(
        &m_lookup, &RouteLookup::routesChanged, this, [this] { Q_EMIT networkReachabilityChanged(this); });
    return true;
}

void Reachability::stopNotifier()
{
    if (!m_notifier) {
        return;
    }
    disconnect(m_notifier);
    m_notifier = {};
    if (addNotifier(m_lookup, -1) == 0) {
        m_lookup.stopNotifier();
    }
}

std::optional<ReachabilityFlags> Reachability::flags() const
{
    return m_hostName.isEmpty() ? m_lookup.flagsForAddress(m_address) : m_lookup.flagsForHost(m_hostName);
}

NetworkStatus Reachability::currentReachabilityStatus() const
{
    const std::optional<ReachabilityFlags> known = flags();
    if (!known) {
        return NetworkStatus::NotReachable;
    }
    return m_alwaysReturnLocalWiFiStatus ? localWiFiStatusForFlags(*known) : networkStatusForFlags(*known);
}

bool Reachability::connectionRequired() const
{
    return has(flags().value_or(0), ConnectionRequired);
}

NetworkStatus Reachability::networkStatusForFlags(ReachabilityFlags flags)
{
    logFlags(flags, "networkStatusForFlags");
    if (!has(flags, Reachable)) {
        return NetworkStatus::NotReachable;
    }
    const bool connectsByItself = (has(flags, ConnectionOnDemand) || has(flags, ConnectionOnTraffic))
        && !has(flags, InterventionRequired);
    return !has(flags, ConnectionRequired) || connectsByItself ? NetworkStatus::Reachable
                                                               : NetworkStatus::NotReachable;
}

NetworkStatus Reachability::localWiFiStatusForFlags(ReachabilityFlags flags)
{
    logFlags(flags, "localWiFiStatusForFlags");
    return has(flags, Reachable) && has(flags, IsDirect) ? NetworkStatus::Reachable
                                                         : NetworkStatus::NotReachable;
}

} // namespace brevok
