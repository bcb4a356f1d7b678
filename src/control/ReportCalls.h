// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "control/ControlCall.h"

#include <QObject>

namespace brevok {

class BrevokUsageReporter;
class BugReporter;

/// The calls that send or show reports.
class ReportCalls final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ReportCalls)

public:
    ReportCalls(BugReporter &bugReporter, BrevokUsageReporter &usageReporter, QObject *parent);
    ~ReportCalls() override;

    void report(const ControlCall &call, const QString &email, const QString &note);
    void reportBody(const ControlCall &call, const QString &email, const QString &note);
    void usageBody(const ControlCall &call);

private:
    BugReporter &m_bugReporter;
    BrevokUsageReporter &m_usageReporter;
};

} // namespace brevok
