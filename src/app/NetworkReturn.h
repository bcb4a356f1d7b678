// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/Reachability.h"

#include <QTimer>

#include <functional>

namespace brevok {

class Connectivity;

/// Notices that a lost network is there again, also one that was missing at the start. Main thread.
class NetworkReturn final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NetworkReturn)

public:
    /// @p routes and @p connectivity outlive it. What comes back for a whole house is told to its machines
    /// at moments of their own within the milliseconds that @p spread gives then, so that they do not all
    /// ask the service at once.
    NetworkReturn(RouteLookup &routes, const Connectivity &connectivity, std::function<int()> spread,
        QObject *parent = nullptr);
    ~NetworkReturn() override;

Q_SIGNALS:
    /// Once for each loss, when the network has stayed for a moment and this machine's turn has come.
    void returned();

private:
    void look();

    const Connectivity &m_connectivity;
    std::unique_ptr<Reachability> m_reachability;
    std::function<int()> m_spread;
    QTimer m_settled;
    bool m_lost;
};

} // namespace brevok
