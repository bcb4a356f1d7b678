// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/session/SystemdTimerRuns.h"

#include "platform/linux/BusCalls.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <limits>
#include <utility>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

QDBusMessage callOf(
    const QString &path, const QString &interface, const QString &method, const QVariantList &arguments)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.freedesktop.systemd1"_s, path, interface, method);
    call.setAutoStartService(false);
    call.setArguments(arguments);
    return call;
}

std::optional<QDateTime> timeOf(const QVariant &microseconds)
{
    bool isNumber = false;
    const qulonglong since1970 = microseconds.toULongLong(&isNumber);
    if (!isNumber || since1970 == 0 || since1970 == std::numeric_limits<qulonglong>::max()) {
        return std::nullopt;
    }
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(since1970 / 1000));
}

} // namespace

SystemdTimerRuns::SystemdTimerRuns(QDBusConnection bus, QString unit)
    : m_bus(std::move(bus))
    , m_unit(std::move(unit))
{
}

void SystemdTimerRuns::askNext(QObject *context, Answer answered)
{
    const QDBusMessage find =
        callOf(u"/org/freedesktop/systemd1"_s, u"org.freedesktop.systemd1.Manager"_s, u"GetUnit"_s, {m_unit});
    whenAnswered(context, m_bus.asyncCall(find), [context, bus = m_bus, answered](const QDBusMessage &found) {
        const QDBusPendingReply<QDBusObjectPath> unit(found);
        if (!unit.isValid()) {
            answered(std::nullopt);
            return;
        }
        const QDBusMessage look = callOf(unit.value().path(), u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
            {u"org.freedesktop.systemd1.Timer"_s, u"NextElapseUSecRealtime"_s});
        whenAnswered(context, bus.asyncCall(look), [answered](const QDBusMessage &told) {
            const QDBusPendingReply<QDBusVariant> next(told);
            answered(next.isValid() ? timeOf(next.value().variant()) : std::nullopt);
        });
    });
}

} // namespace brevok
