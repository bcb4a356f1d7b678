// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "reporting/BugReport.h"

#include "foundation/Log.h"
#include "foundation/Record.h"
#include "foundation/Secrets.h"
#include "foundation/Texts.h"
#include "reporting/ReportPost.h"

#include <QJsonDocument>
#include <QRegularExpression>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int okStatus = 200;

ReportOutcome outcome(ReportOutcome::Kind kind, AlertStyle style, const QString &message, const QString &text,
    const QString &button)
{
    return {.kind = kind,
        .sent = false,
        .alert = {.messageText = message,
            .informativeText = text,
            .style = style,
            .icon = {},
            .buttons = {{.title = button}},
            .accessory = {}}};
}

ReportOutcome invalid(const QString &message, const QString &text)
{
    return outcome(ReportOutcome::Kind::Invalid, AlertStyle::Critical, message, text, Texts::tr("OK"));
}

ReportOutcome answered(const QString &message, const QString &text)
{
    return outcome(
        ReportOutcome::Kind::Answered, AlertStyle::Informational, message, text, Texts::tr("Close"));
}

QString contactSupport()
{
    return Texts::tr("Please contact Tolvane support.");
}

ReportOutcome unreadableAnswer(const QByteArray &body, const QJsonParseError &parseError)
{
    const QString text = excerpt(body);
    logLine(u"Bug Report connection failed!"_s);
    logLine(u"Received %1 bytes of data"_s.arg(body.size()));
    logLine(u"Response string: "_s + text);
    if (parseError.error != QJsonParseError::NoError) {
        logError(BrevokError{.domain = QString::fromLatin1(connectionErrorDomain),
            .code = parseError.error,
            .description = parseError.errorString(),
            .details = {{u"Offset"_s, QString::number(parseError.offset)}}});
    }
    return answered(Texts::tr("Failed to send error report"),
        Texts::tr("Received %1 bytes (%2)\n\n%3")
            .arg(QString::number(body.size()), orDash(text), contactSupport()));
}

} // namespace

QString ReportOutcome::sentence() const
{
    return u"%1 %2"_s.arg(alert.messageText.value_or(QString()), alert.informativeText.value_or(QString()))
        .simplified();
}

bool NSStringIsValidEmail(const QString &address)
{
    static const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(uR"(^.+@([A-Za-z0-9-]+\.)+[A-Za-z]{2}[A-Za-z]*$)"_s));
    return pattern.match(address).hasMatch();
}

std::optional<ReportOutcome> formFault(const QString &email, const QString &note)
{
    const QString enterAddress =
        Texts::tr("Please enter a valid email address so we can respond to your message.");
    if (email.isEmpty()) {
        return invalid(Texts::tr("Missing email address!"), enterAddress);
    }
    if (!NSStringIsValidEmail(email)) {
        return invalid(Texts::tr("Invalid email address!"), enterAddress);
    }
    if (note.isEmpty()) {
        return invalid(Texts::tr("Missing problem description!"),
            Texts::tr("Please describe the problem and what were you doing when the problem came up."));
    }
    return std::nullopt;
}

QByteArray bugReportBody(const QString &email, const QList<ReportItem> &items)
{
    QJsonArray data;
    for (const ReportItem &item : items) {
        data.append(QJsonObject{{u"Key"_s, item.key}, {u"Value"_s, item.value}});
    }
    QJsonObject body{{u"Data"_s, data}};
    if (!email.isEmpty()) {
        body.insert("Email"_L1, email);
    }
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

ReportOutcome unreachableOutcome(bool networkReachable)
{
    return outcome(ReportOutcome::Kind::Unreachable, AlertStyle::Critical, Texts::tr("Connection Error"),
        networkReachable ? Texts::tr("Tolvane Brevok servers are unreachable.")
                         : Texts::tr("Network is unreachable. Is your internet connection down?"),
        Texts::tr("OK"));
}

ReportOutcome answerOutcome(int status, const QByteArray &body)
{
    QJsonParseError parseError;
    const QJsonDocument answer = QJsonDocument::fromJson(body, &parseError);
    if (answer.isNull()) {
        return unreadableAnswer(body, parseError);
    }
    const QString text = QString::fromUtf8(answer.toJson(QJsonDocument::Compact));
    logLine(withoutSecretFields(text));
    if (status != okStatus) {
        logLine(u"Failed to send Bug Report with response: "_s + statusText(status));
        return answered(Texts::tr("Failed to send error report"),
            Texts::tr("Server response: %1\n\n%2").arg(statusText(status), contactSupport()));
    }
    ReportOutcome thanks = answered(Texts::tr("Thank you for reporting this issue."),
        Texts::tr("Tolvane support team will contact you shortly."));
    thanks.sent = true;
    return thanks;
}

ReportOutcome failureOutcome(const std::optional<BrevokError> &error)
{
    logLine(u"Failed to send Bug Report"_s);
    const QString description = error ? error->description : QString();
    return outcome(ReportOutcome::Kind::Failed, AlertStyle::Warning, Texts::tr("Failed to send error report"),
        u"%1\n\n%2"_s.arg(
            description.isEmpty() ? Texts::tr("Unknown connection error.") : description, contactSupport()),
        Texts::tr("Close"));
}

} // namespace brevok
