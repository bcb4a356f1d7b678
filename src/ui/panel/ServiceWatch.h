// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>
#include <QObject>

namespace brevok {

class BrevokPackages;
class BrevokPlugins;
class Connectivity;

/// Watches whether the service answers the requests of its lists, from its making on. Main thread.
class ServiceWatch final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ServiceWatch)

public:
    ServiceWatch(BrevokPlugins &plugins, BrevokPackages &packages, const Connectivity &connectivity,
        QObject *parent = nullptr);
    ~ServiceWatch() override;

    /// Asks the routing table.
    [[nodiscard]] bool networkReachable() const;
    /// When the first of the failures since the last good answer happened; invalid while the service answers.
    [[nodiscard]] QDateTime silentSince() const { return m_silentSince; }
    /// Whether no request of the list of packages has ended yet.
    [[nodiscard]] bool loading() const { return m_loading; }
    /// Asks for both lists again, without the windows of the user's own check.
    void tryAgain();
    /// What failed before counts no more, as after signing in.
    void forget();

Q_SIGNALS:
    void changed();

private:
    void finished(bool ok);

    BrevokPlugins &m_plugins;
    BrevokPackages &m_packages;
    const Connectivity &m_connectivity;
    QDateTime m_silentSince;
    bool m_loading;
};

} // namespace brevok
