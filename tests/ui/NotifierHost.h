// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QObject>
#include <QTest>

namespace brevok::testing {

using namespace Qt::StringLiterals;

/// The bus' list of items, and a host that shows them unless the test says otherwise, on a connection of its
/// own.
class NotifierHost final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER shows)

public:
    explicit NotifierHost(bool showsItems = true)
        : shows(showsItems)
        , m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"notifier-host"_s))
    {
        m_bus.registerObject(u"/StatusNotifierWatcher"_s, this, QDBusConnection::ExportAllContents);
        m_bus.registerService(u"org.kde.StatusNotifierWatcher"_s);
    }
    /// As a crash would: the connection is gone.
    ~NotifierHost() override { QDBusConnection::disconnectFromBus(u"notifier-host"_s); }
    Q_DISABLE_COPY_MOVE(NotifierHost)

    /// Calls the item that registered last.
    void call(const QString &method, const QVariantList &arguments)
    {
        m_bus.send(message(u"org.kde.StatusNotifierItem"_s, method, arguments));
    }
    [[nodiscard]] QVariant property(const QString &name)
    {
        QDBusPendingReply<QDBusVariant> reply = m_bus.asyncCall(
            message(u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {u"org.kde.StatusNotifierItem"_s, name}));
        const bool ended = QTest::qWaitFor([&reply] { return reply.isFinished(); });
        return ended && !reply.isError() ? reply.value().variant() : QVariant();
    }

    QStringList items;
    bool shows;

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &item) { items.append(item); }

Q_SIGNALS:
    void StatusNotifierHostRegistered();

private:
    [[nodiscard]] QDBusMessage message(
        const QString &interface, const QString &method, const QVariantList &arguments) const
    {
        QDBusMessage made =
            QDBusMessage::createMethodCall(items.last(), u"/StatusNotifierItem"_s, interface, method);
        made.setArguments(arguments);
        return made;
    }

    QDBusConnection m_bus;
};

} // namespace brevok::testing
