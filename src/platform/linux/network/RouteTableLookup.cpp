// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/network/RouteTableLookup.h"

#include "platform/linux/network/RouteTable.h"

#include <QFile>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <cstring>

#include <arpa/inet.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace brevok {

namespace {

constexpr quint16 anyPort = 9;

QByteArray tableText(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

RouteTable currentRoutes()
{
    return {.ipv4 = tableText(QStringLiteral("/proc/net/route")),
        .ipv6 = tableText(QStringLiteral("/proc/net/ipv6_route"))};
}

// A socket address, and the address within it.
struct SocketAddress {
    sockaddr_storage storage = {};
    socklen_t length = 0;

    explicit SocketAddress(const InternetAddress &address)
    {
        if (address.isIpv4()) {
            sockaddr_in ipv4 = {};
            ipv4.sin_family = AF_INET;
            ipv4.sin_port = htons(anyPort);
            std::memcpy(&ipv4.sin_addr, address.bytes().constData(), sizeof ipv4.sin_addr);
            fill(ipv4);
        } else {
            sockaddr_in6 ipv6 = {};
            ipv6.sin6_family = AF_INET6;
            ipv6.sin6_port = htons(anyPort);
            std::memcpy(&ipv6.sin6_addr, address.bytes().constData(), sizeof ipv6.sin6_addr);
            fill(ipv6);
        }
    }

    template <typename Address> void fill(const Address &address)
    {
        std::memcpy(&storage, &address, sizeof address);
        length = sizeof address;
    }

    [[nodiscard]] bool holds(const InternetAddress &address) const
    {
        const void *within = address.isIpv4()
            ? static_cast<const void *>(&reinterpret_cast<const sockaddr_in *>(&storage)->sin_addr)
            : &reinterpret_cast<const sockaddr_in6 *>(&storage)->sin6_addr;
        return std::memcmp(within, address.bytes().constData(), static_cast<size_t>(address.bytes().size()))
            == 0;
    }

    // The system's socket calls take every kind of address by the base of all.
    sockaddr *base() { return reinterpret_cast<sockaddr *>(&storage); }
};

// Connecting a datagram socket chooses the route and sends nothing.
ReachabilityFlags flagsOfRoute(const InternetAddress &address)
{
    SocketAddress target(address);
    const FileDescriptor probe(
        ::socket(target.storage.ss_family, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    const int yes = 1;
    if (probe) {
        // Without it a network's own address is refused for a reason that has nothing to do with routes.
        ::setsockopt(probe.get(), SOL_SOCKET, SO_BROADCAST, &yes, sizeof yes);
    }
    if (!probe || ::connect(probe.get(), target.base(), target.length) != 0) {
        return 0;
    }
    SocketAddress source(address);
    ::getsockname(probe.get(), source.base(), &source.length);
    if (address.isLoopback() || source.holds(address)) {
        return Reachable | IsLocalAddress;
    }
    return currentRoutes().isDirect(address) ? Reachable | IsDirect : ReachabilityFlags(Reachable);
}

} // namespace

RouteTableLookup::RouteTableLookup(QObject *parent)
    : RouteLookup(parent)
{
}

RouteTableLookup::~RouteTableLookup() = default;

std::optional<ReachabilityFlags> RouteTableLookup::flagsForHost(const QString &host) const
{
    if (host.isEmpty()) {
        return std::nullopt;
    }
    QString name = host;
    if (name.startsWith(u'[') && name.endsWith(u']')) {
        name = name.sliced(1).chopped(1);
    }
    if (name.compare(QStringLiteral("localhost"), Qt::CaseInsensitive) == 0) {
        name = QStringLiteral("127.0.0.1");
    }
    const InternetAddress literal = InternetAddress::fromText(name);
    return flagsForAddress(literal.isNull() ? InternetAddress::fromText(QStringLiteral("0.0.0.0")) : literal);
}

std::optional<ReachabilityFlags> RouteTableLookup::flagsForAddress(const InternetAddress &address) const
{
    if (address.isNull()) {
        return std::nullopt;
    }
    if (address.isZero()) {
        return currentRoutes().hasDefaultRoute() ? ReachabilityFlags(Reachable) : 0;
    }
    return flagsOfRoute(address);
}

bool RouteTableLookup::startNotifier()
{
    if (m_notifier) {
        return true;
    }
    FileDescriptor changes(::socket(AF_NETLINK, SOCK_RAW | SOCK_NONBLOCK | SOCK_CLOEXEC, NETLINK_ROUTE));
    sockaddr_nl groups = {};
    groups.nl_family = AF_NETLINK;
    groups.nl_groups =
        RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV4_ROUTE | RTMGRP_IPV6_IFADDR | RTMGRP_IPV6_ROUTE;
    if (!changes || ::bind(changes.get(), reinterpret_cast<sockaddr *>(&groups), sizeof groups) != 0) {
        return false;
    }
    m_changes = std::move(changes);
    m_notifier = std::make_unique<QSocketNotifier>(m_changes.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &RouteTableLookup::readChanges);
    return true;
}

void RouteTableLookup::stopNotifier()
{
    m_notifier.reset();
    m_changes.close();
}

// What changed is of no interest, only that something did; an overflow of the queue says as much.
void RouteTableLookup::readChanges()
{
    std::array<char, 8192> message = {};
    bool changed = false;
    for (;;) {
        const ssize_t length = ::recv(m_changes.get(), message.data(), message.size(), 0);
        if (length > 0 || (length < 0 && errno == ENOBUFS)) {
            changed = true;
        } else if (length == 0 || errno != EINTR) {
            break;
        }
    }
    if (changed) {
        Q_EMIT routesChanged();
    }
}

} // namespace brevok
