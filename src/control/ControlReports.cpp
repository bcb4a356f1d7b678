// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// The methods that send or show reports.

#include "control/ControlService.h"
#include "reporting/BrevokUsageReporter.h"
#include "reporting/BugReporter.h"

#include <QDBusConnection>
#include <QDBusMessage>

namespace brevok {

using namespace Qt::StringLiterals;

QStringList ControlService::Report(const QString &email, const QString &note)
{
    if (refusedTooEarly()) {
        return {};
    }
    m_with->bugReporter.report({
        .email = email,
        .note = note,
        .context = this,
        .stage = {},
        .done =
            [answer = answerLater()](const ReportOutcome &outcome) {
                answer(outcome.sent ? QStringList() : QStringList{outcome.sentence()});
            },
    });
    return {};
}

QString ControlService::ReportBody(const QString &email, const QString &note)
{
    if (refusedTooEarly()) {
        return {};
    }
    m_with->bugReporter.reportBody(
        email, note, this, [send = sendLater(), call = message()](const QByteArray &body) {
            send(call.createReply(QString::fromUtf8(body)));
        });
    return {};
}

QString ControlService::UsageBody()
{
    if (refusedTooEarly()) {
        return {};
    }
    m_with->usageReporter.reportBody(
        this, [send = sendLater(), call = message()](const std::optional<QByteArray> &body) {
            send(body ? call.createReply(QString::fromUtf8(*body))
                      : call.createErrorReply(QString::fromLatin1(refusedError),
                          u"No target application is known, so no usage report is sent."_s));
        });
    return {};
}

} // namespace brevok
