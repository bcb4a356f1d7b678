// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/session/DBusNotifications.h"

#include "foundation/Log.h"

#include <QDBusMessage>

namespace brevok {

namespace {

constexpr int confirmationTimeoutMilliseconds = 1000;

QString notificationPath()
{
    return QStringLiteral("/com/tolvane/brevok/Notifications");
}

QString notificationInterface()
{
    return QStringLiteral("com.tolvane.brevok.DistributedNotification1");
}

QString postedMember()
{
    return QStringLiteral("Posted");
}

} // namespace

DBusNotifications::DBusNotifications(QDBusConnection bus, QObject *parent)
    : DistributedNotifications(parent)
    , m_bus(std::move(bus))
{
}

DBusNotifications::~DBusNotifications()
{
    if (m_confirmation && m_bus.isConnected()) {
        m_confirmation->waitForFinished();
    }
}

bool DBusNotifications::isConnected()
{
    if (!m_bus.isConnected() && !std::exchange(m_absenceSaid, true)) {
        logLine(QStringLiteral("There is no session bus: other programs cannot be told anything."));
    }
    return m_bus.isConnected();
}

void DBusNotifications::post(const QString &name, const QString &object)
{
    if (!isConnected()) {
        return;
    }
    QDBusMessage notification =
        QDBusMessage::createSignal(notificationPath(), notificationInterface(), postedMember());
    notification << name << object;
    m_bus.send(notification);
    const QDBusMessage ping = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
        QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus.Peer"),
        QStringLiteral("Ping"));
    m_confirmation = m_bus.asyncCall(ping, confirmationTimeoutMilliseconds);
}

void DBusNotifications::use(const QDBusConnection &bus)
{
    m_bus = bus;
    m_confirmation.reset();
    m_absenceSaid = false;
    for (const auto &[name, object] : std::as_const(m_observed)) {
        listen(name, object);
    }
}

void DBusNotifications::observe(const QString &name, const QString &object)
{
    m_observed.append({name, object});
    if (isConnected()) {
        listen(name, object);
    }
}

void DBusNotifications::listen(const QString &name, const QString &object)
{
    const bool connected = m_bus.connect({}, notificationPath(), notificationInterface(), postedMember(),
        {name, object}, QStringLiteral("ss"), this, SLOT(receive(QString, QString, QDBusMessage)));
    if (!connected) {
        logLine(QStringLiteral("The notification %1 of other programs cannot be heard.").arg(object));
    }
}

void DBusNotifications::receive(const QString &name, const QString &object, const QDBusMessage &message)
{
    if (message.service() != m_bus.baseService()) {
        Q_EMIT posted(name, object);
    }
}

} // namespace brevok
