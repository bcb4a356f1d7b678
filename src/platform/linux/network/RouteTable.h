// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/InternetAddress.h"

namespace brevok {

/// The kernel's tables of routes as text, as /proc/net/route and /proc/net/ipv6_route give them. Lines that
/// are none count as absent.
struct RouteTable {
    QByteArray ipv4{};
    QByteArray ipv6{};

    /// Whether anything leads to the internet at large.
    [[nodiscard]] bool hasDefaultRoute() const;
    /// Whether the best route to @p address needs no gateway.
    [[nodiscard]] bool isDirect(const InternetAddress &address) const;
};

} // namespace brevok
