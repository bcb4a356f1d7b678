// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/session/DesktopNotifications.h"

#include "foundation/Log.h"
#include "foundation/UntrustedText.h"
#include "platform/linux/BusCalls.h"

#include <QDBusMessage>
#include <QDBusPendingReply>

namespace brevok {

namespace {

constexpr int asTheServerLikes = -1; // how long a notice stays
constexpr uint replacesNone = 0;

QDBusMessage callOf(const QString &method)
{
    const QString name = QStringLiteral("org.freedesktop.Notifications");
    return QDBusMessage::createMethodCall(
        name, QStringLiteral("/org/freedesktop/Notifications"), name, method);
}

} // namespace

DesktopNotifications::DesktopNotifications(
    QDBusConnection bus, QString identifier, QString displayName, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_identifier(std::move(identifier))
    , m_displayName(std::move(displayName))
{
}

DesktopNotifications::~DesktopNotifications() = default;

void DesktopNotifications::use(const QDBusConnection &bus)
{
    m_bus = bus;
    m_shown.clear();
}

void DesktopNotifications::actionInvoked(uint id, const QString &action)
{
    if (m_shown.remove(id)) {
        activated(action);
    }
}

// Some servers read the text as markup and some do not; a name of the service must come out right with both.
void DesktopNotifications::present(const UserNotification &notification)
{
    const QDBusMessage question = callOf(QStringLiteral("GetCapabilities"));
    whenAnswered(this, m_bus.asyncCall(question), [this, notification](const QDBusMessage &answer) {
        const QDBusPendingReply<QStringList> capabilities(answer);
        if (capabilities.isValid()) {
            send(notification, capabilities.value());
        } else if (detailedLog()) {
            logLine(QStringLiteral("Nobody shows notices here: %1").arg(capabilities.error().message()));
        }
    });
}

void DesktopNotifications::send(const UserNotification &notification, const QStringList &capabilities)
{
    const bool bodyIsMarkup = capabilities.contains(QStringLiteral("body-markup"));
    QStringList actions;
    if (capabilities.contains(QStringLiteral("actions"))) {
        for (const UserNotificationAction &action : notification.actions) {
            actions += {action.name, action.title};
        }
    }
    QDBusMessage call = callOf(QStringLiteral("Notify"));
    const QString text = severalLines(notification.informativeText);
    const QVariantMap hints{{QStringLiteral("desktop-entry"), m_identifier}};
    call.setArguments({m_displayName, replacesNone, m_identifier, oneLine(notification.title),
        bodyIsMarkup ? text.toHtmlEscaped() : text, actions, hints, asTheServerLikes});
    if (actions.isEmpty()) {
        m_bus.asyncCall(call);
        return;
    }
    // Twice is once.
    m_bus.connect(QString(), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("ActionInvoked"), this,
        SLOT(actionInvoked(uint, QString)));
    whenAnswered(this, m_bus.asyncCall(call), [this](const QDBusMessage &answer) {
        if (const QDBusPendingReply<uint> id(answer); id.isValid()) {
            m_shown.insert(id.value());
        }
    });
}

} // namespace brevok
