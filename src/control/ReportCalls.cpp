// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/ReportCalls.h"

#include "reporting/BrevokUsageReporter.h"
#include "reporting/BugReporter.h"

namespace brevok {

using namespace Qt::StringLiterals;

ReportCalls::ReportCalls(BugReporter &bugReporter, BrevokUsageReporter &usageReporter, QObject *parent)
    : QObject(parent)
    , m_bugReporter(bugReporter)
    , m_usageReporter(usageReporter)
{
}

ReportCalls::~ReportCalls() = default;

void ReportCalls::report(const ControlCall &call, const QString &email, const QString &note)
{
    m_bugReporter.report({
        .email = email,
        .note = note,
        .context = this,
        .stage = {},
        .done =
            [call](const ReportOutcome &outcome) {
                call.answer(outcome.sent ? QStringList() : QStringList{outcome.sentence()});
            },
    });
}

void ReportCalls::reportBody(const ControlCall &call, const QString &email, const QString &note)
{
    m_bugReporter.reportBody(
        email, note, this, [call](const QByteArray &body) { call.answer(QString::fromUtf8(body)); });
}

void ReportCalls::usageBody(const ControlCall &call)
{
    m_usageReporter.reportBody(this, [call](const std::optional<QByteArray> &body) {
        if (body) {
            call.answer(QString::fromUtf8(*body));
        } else {
            call.refuse(u"No target application is known, so no usage report is sent."_s);
        }
    });
}

} // namespace brevok
