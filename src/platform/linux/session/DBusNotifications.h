// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DistributedNotifications.h"

#include <QDBusConnection>
#include <QDBusPendingCall>

#include <optional>

class QDBusMessage;

namespace brevok {

/// Notifications as signals on a message bus. What this connection posts itself is not delivered back.
/// Posting only hands the signal over; the destructor waits until the bus has it, so that it outlives a
/// process that ends at once.
class DBusNotifications final : public DistributedNotifications {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DBusNotifications)

public:
    /// @p bus need not be connected: then one log line says so and nothing is posted.
    explicit DBusNotifications(QDBusConnection bus, QObject *parent = nullptr);
    ~DBusNotifications() override;

    /// Goes on with another connection: what was observed is observed there.
    void use(const QDBusConnection &bus);

    void post(const QString &name, const QString &object) override;
    void observe(const QString &name, const QString &object) override;

private Q_SLOTS:
    void receive(const QString &name, const QString &object, const QDBusMessage &message);

private:
    bool isConnected();
    void listen(const QString &name, const QString &object);

    QDBusConnection m_bus;
    std::optional<QDBusPendingCall> m_confirmation; // answered after everything posted before it
    QList<std::pair<QString, QString>> m_observed; // name and object
    bool m_absenceSaid = false;
};

} // namespace brevok
