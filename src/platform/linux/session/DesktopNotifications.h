// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/UserNotificationCenter.h"

#include <QDBusConnection>
#include <QObject>
#include <QSet>

namespace brevok {

/// The desktop's server for org.freedesktop.Notifications, which the bus may start at the first notice.
class DesktopNotifications final : public QObject, public UserNotificationCenter {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DesktopNotifications)

public:
    /// @p identifier names the program's desktop entry and icon, @p displayName is what users read.
    DesktopNotifications(
        QDBusConnection bus, QString identifier, QString displayName, QObject *parent = nullptr);
    ~DesktopNotifications() override;

    /// Goes on with another connection.
    void use(const QDBusConnection &bus);

    [[nodiscard]] bool exists() const override { return m_bus.isConnected(); }

protected:
    void present(const UserNotification &notification) override;

private Q_SLOTS:
    void actionInvoked(uint id, const QString &action);

private:
    void send(const UserNotification &notification, const QStringList &capabilities);

    QDBusConnection m_bus;
    QString m_identifier;
    QString m_displayName;
    QSet<uint> m_shown; ///< with buttons
};

} // namespace brevok
