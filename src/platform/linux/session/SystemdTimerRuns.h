// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/TimerRuns.h"

#include <QDBusConnection>
#include <QString>

namespace brevok {

/// A timer unit of the user's systemd, which is asked over the session bus and never started for it.
class SystemdTimerRuns final : public TimerRuns {
public:
    SystemdTimerRuns(QDBusConnection bus, QString unit);

    /// Goes on with another connection.
    void use(const QDBusConnection &bus) { m_bus = bus; }

    void askNext(QObject *context, Answer answered) override;

private:
    QDBusConnection m_bus;
    QString m_unit;
};

} // namespace brevok
