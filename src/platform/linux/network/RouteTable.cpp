// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/network/RouteTable.h"

#include <QList>

#include <algorithm>
#include <bit>
#include <optional>

#include <net/route.h>

namespace brevok {

namespace {

struct Route {
    InternetAddress network{};
    int prefixLength = 0;
    bool hasGateway = false;
};

bool leadsSomewhere(quint32 flags, QByteArrayView interface)
{
    return (flags & RTF_UP) != 0 && (flags & RTF_REJECT) == 0 && interface != QByteArrayView("lo");
}

std::optional<Route> ipv4Route(const QList<QByteArray> &fields)
{
    // interface destination gateway flags references uses metric mask ...
    if (fields.size() < 8) {
        return std::nullopt;
    }
    bool areNumbers = true;
    const auto number = [&](qsizetype field) {
        bool isNumber = false;
        const quint32 value = fields[field].toUInt(&isNumber, 16);
        areNumbers = areNumbers && isNumber;
        return value;
    };
    const quint32 destination = number(1); // as the bytes lie in memory
    const quint32 gateway = number(2);
    const quint32 flags = number(3);
    const quint32 mask = number(7);
    if (!areNumbers || !leadsSomewhere(flags, fields[0])) {
        return std::nullopt;
    }
    const QByteArray bytes(reinterpret_cast<const char *>(&destination), sizeof destination);
    return Route{
        .network = InternetAddress(bytes), .prefixLength = std::popcount(mask), .hasGateway = gateway != 0};
}

std::optional<Route> ipv6Route(const QList<QByteArray> &fields)
{
    // destination length source length next-hop metric references uses flags interface
    if (fields.size() < 10) {
        return std::nullopt;
    }
    const QByteArray destination = QByteArray::fromHex(fields[0]);
    const QByteArray nextHop = QByteArray::fromHex(fields[4]);
    bool isLength = false;
    bool isFlags = false;
    const int length = fields[1].toInt(&isLength, 16);
    const quint32 flags = fields[8].toUInt(&isFlags, 16);
    const InternetAddress network(destination);
    if (network.isNull() || nextHop.size() != destination.size() || !isLength || !isFlags || length < 0
        || length > 128 || !leadsSomewhere(flags, fields[9])) {
        return std::nullopt;
    }
    return Route{
        .network = network, .prefixLength = length, .hasGateway = nextHop.count('\0') != nextHop.size()};
}

template <typename Parse> QList<Route> routes(const QByteArray &table, Parse parse)
{
    QList<Route> found;
    for (const QByteArray &line : table.split('\n')) {
        if (const std::optional<Route> route = parse(line.simplified().split(' '))) {
            found.append(*route);
        }
    }
    return found;
}

} // namespace

bool RouteTable::hasDefaultRoute() const
{
    // Tunnels cover everything with two halves, so that the default route of the link below stays untouched.
    const auto coversTheInternet = [](const Route &route) {
        return route.prefixLength <= 1;
    };
    const QList<Route> ipv4Routes = routes(ipv4, ipv4Route);
    const QList<Route> ipv6Routes = routes(ipv6, ipv6Route);
    return std::any_of(ipv4Routes.cbegin(), ipv4Routes.cend(), coversTheInternet)
        || std::any_of(ipv6Routes.cbegin(), ipv6Routes.cend(), coversTheInternet);
}

bool RouteTable::isDirect(const InternetAddress &address) const
{
    const QList<Route> table = address.isIpv4() ? routes(ipv4, ipv4Route) : routes(ipv6, ipv6Route);
    const Route *best = nullptr;
    for (const Route &route : table) {
        if (address.isWithin(route.network, route.prefixLength)
            && (best == nullptr || route.prefixLength > best->prefixLength)) {
            best = &route;
        }
    }
    return best != nullptr && !best->hasGateway;
}

} // namespace brevok
