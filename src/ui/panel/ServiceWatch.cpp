// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/ServiceWatch.h"

#include "catalogue/BrevokPackages.h"
#include "service/Connectivity.h"

namespace brevok {

ServiceWatch::ServiceWatch(
    BrevokPlugins &plugins, BrevokPackages &packages, const Connectivity &connectivity, QObject *parent)
    : QObject(parent)
    , m_plugins(plugins)
    , m_packages(packages)
    , m_connectivity(connectivity)
    , m_loading(connectivity.checkNetworkReachability()) // without a network nothing was asked for
{
    connect(&plugins, &BrevokPlugins::checkFinished, this, &ServiceWatch::finished);
    connect(&packages, &BrevokPackages::checkFinished, this, [this](bool ok) {
        m_loading = false;
        finished(ok);
    });
    connect(&packages, &BrevokPackages::ownCheckFailed, this, &ServiceWatch::setCheckFailure);
    connect(&packages, &BrevokPackages::updateProgressWanted, this, [this] { setCheckFailure({}); });
}

ServiceWatch::~ServiceWatch() = default;

bool ServiceWatch::networkReachable() const
{
    return m_connectivity.checkNetworkReachability();
}

void ServiceWatch::finished(bool ok)
{
    if (ok) {
        m_silentSince = {};
        m_checkFailure.clear();
    } else if (!m_silentSince.isValid() && networkReachable()) {
        m_silentSince = QDateTime::currentDateTime();
    }
    Q_EMIT changed();
}

void ServiceWatch::setCheckFailure(const QString &cause)
{
    m_checkFailure = cause;
    Q_EMIT changed();
}

void ServiceWatch::tryAgain()
{
    m_plugins.checkForUpdates();
    m_packages.checkForUpdates();
}

void ServiceWatch::forget()
{
    m_silentSince = {};
    m_checkFailure.clear();
    Q_EMIT changed();
}

} // namespace brevok
