// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/NetworkReturn.h"

#include "service/Connectivity.h"

#include <QRandomGenerator>

#include <utility>

namespace brevok {

namespace {

// A link that comes up changes the routes several times, and name servers follow last.
constexpr int settlingMs = 1000;

} // namespace

NetworkReturn::NetworkReturn(
    RouteLookup &routes, const Connectivity &connectivity, std::function<int()> spread, QObject *parent)
    : QObject(parent)
    , m_connectivity(connectivity)
    , m_reachability(Reachability::reachabilityForInternetConnection(routes))
    , m_spread(std::move(spread))
    , m_settled(this)
    , m_lost(!connectivity.checkNetworkReachability())
{
    m_settled.setSingleShot(true);
    connect(&m_settled, &QTimer::timeout, this, [this] {
        m_lost = false;
        Q_EMIT returned();
    });
    connect(m_reachability.get(), &Reachability::networkReachabilityChanged, this, &NetworkReturn::look);
    m_reachability->startNotifier();
}

NetworkReturn::~NetworkReturn() = default;

// The same question that every request asks first.
void NetworkReturn::look()
{
    if (!m_connectivity.checkNetworkReachability()) {
        m_lost = true;
        m_settled.stop();
    } else if (m_lost && !m_settled.isActive()) {
        m_settled.start(settlingMs + static_cast<int>(QRandomGenerator::global()->bounded(m_spread() + 1)));
    }
}

} // namespace brevok
