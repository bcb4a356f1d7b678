// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/RouteLookup.h"

#include <QStringList>

namespace brevok::testing {

/// Routes as the test says, the same to everywhere.
class FakeRouteLookup final : public RouteLookup {
public:
    using RouteLookup::RouteLookup;

    std::optional<ReachabilityFlags> flags = Reachable;
    bool notifierWorks = true;
    bool notifying = false;
    mutable QStringList asked; ///< hosts and addresses, in order

    [[nodiscard]] std::optional<ReachabilityFlags> flagsForHost(const QString &host) const override
    {
        asked.append(host);
        return flags;
    }
    [[nodiscard]] std::optional<ReachabilityFlags> flagsForAddress(
        const InternetAddress &address) const override
    {
        asked.append(address.text());
        return flags;
    }
    bool startNotifier() override
    {
        notifying = notifierWorks;
        return notifierWorks;
    }
    void stopNotifier() override { notifying = false; }
};

} // namespace brevok::testing
