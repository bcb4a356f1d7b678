// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "service/Reachability.h"

#include <QTimer>

namespace brevok {

class Connectivity;

/// Notices that a lost network is there again, also one that was missing at the start. Main thread.
class NetworkReturn final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NetworkReturn)

public:
    /// @p routes and @p connectivity outlive it.
    NetworkReturn(RouteLookup &routes, const Connectivity &connectivity, QObject *parent = nullptr);
    ~NetworkReturn() override;

Q_SIGNALS:
    /// Once for each loss, when the network has stayed for a moment.
    void returned();

private:
    void look();

    const Connectivity &m_connectivity;
    std::unique_ptr<Reachability> m_reachability;
    QTimer m_settled;
    bool m_lost;
};

} // namespace brevok
