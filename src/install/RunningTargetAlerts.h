// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/RunningApplications.h"

#include <QDateTime>
#include <QHash>
#include <QObject>

#include <functional>

namespace brevok {

class BrevokAlertQueue;
class StateStore;

/// Tells the user of a target application that runs while plug-ins are installed into it or removed, and
/// quits it when asked to. An application is mentioned again only when nothing was done to it for a minute.
/// Main thread.
class RunningTargetAlerts final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RunningTargetAlerts)

public:
    enum class Occasion { Install, Removal };

    RunningTargetAlerts(RunningApplications &applications, StateStore &state, BrevokAlertQueue &alerts,
        std::function<QDateTime()> now, QObject *parent);
    ~RunningTargetAlerts() override;

    /// @p application runs from @p folder while it is changed. Does not wait for the user's answer.
    void note(Occasion occasion, const RunningApplication &application, const QString &folder);

private:
    void loadDates();
    void show(Occasion occasion, const RunningApplication &application, const QString &marketingName);

    RunningApplications &m_applications;
    StateStore &m_state;
    BrevokAlertQueue &m_alerts;
    std::function<QDateTime()> m_now;
    QHash<QString, QDateTime> m_dates; ///< of the last mention, by the folder of the application
};

} // namespace brevok
