// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/FileDescriptor.h"
#include "platform/RouteLookup.h"

#include <memory>

class QSocketNotifier;

namespace brevok {

/// Asks the kernel's routing tables.
class RouteTableLookup final : public RouteLookup {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RouteTableLookup)

public:
    explicit RouteTableLookup(QObject *parent = nullptr);
    ~RouteTableLookup() override;

    [[nodiscard]] std::optional<ReachabilityFlags> flagsForHost(const QString &host) const override;
    [[nodiscard]] std::optional<ReachabilityFlags> flagsForAddress(
        const InternetAddress &address) const override;
    bool startNotifier() override;
    void stopNotifier() override;

private:
    void readChanges();

    FileDescriptor m_changes;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace brevok
