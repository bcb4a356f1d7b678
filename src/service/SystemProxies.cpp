// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "service/SystemProxies.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QNetworkProxyQuery>

#include <chrono>

namespace brevok {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto remembered = 60s;

// Proxies may differ by scheme, host and port; by path they do so in no setting worth a look-up a request.
QString originOf(const QUrl &url)
{
    return url.toString(QUrl::RemovePath | QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
}

bool isThisMachine(const QUrl &url)
{
    const QString host = url.host();
    return host == u"localhost"_s || host.endsWith(u".localhost"_s) || QHostAddress(host).isLoopback();
}

} // namespace

SystemProxies::SystemProxies(QObject *parent)
    : QObject(parent)
{
}

SystemProxies::~SystemProxies() = default;

void SystemProxies::whenKnown(const QUrl &url, QObject *context, Task then)
{
    const QString origin = originOf(url);
    if (isThisMachine(url)
        || (m_entries.contains(origin) && !m_entries[origin].age.hasExpired(remembered / 1ms))) {
        then();
        return;
    }
    Entry &entry = m_entries[origin];
    const bool asked = !entry.waiting.isEmpty();
    entry.waiting.append({context, std::move(then)});
    if (!asked) {
        lookUp(origin, url);
    }
}

QList<QNetworkProxy> SystemProxies::known(const QUrl &url) const
{
    const QList<QNetworkProxy> proxies =
        isThisMachine(url) ? QList<QNetworkProxy>() : m_entries.value(originOf(url)).proxies;
    return proxies.isEmpty() ? QList{QNetworkProxy(QNetworkProxy::NoProxy)} : proxies;
}

void SystemProxies::lookUp(const QString &origin, const QUrl &url)
{
    inBackground([self = QPointer<SystemProxies>(this), origin, url] {
        const QList<QNetworkProxy> proxies =
            QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url));
        onMain(QCoreApplication::instance(), [self, origin, proxies] {
            if (self) {
                self->found(origin, proxies);
            }
        });
    });
}

void SystemProxies::found(const QString &origin, const QList<QNetworkProxy> &proxies)
{
    Entry &entry = m_entries[origin];
    entry.proxies = proxies;
    entry.age.start();
    const QList<Waiting> waiting = std::exchange(entry.waiting, {});
    for (const Waiting &one : waiting) {
        if (one.context) {
            one.then();
        }
    }
}

} // namespace brevok
