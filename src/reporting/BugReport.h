// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/AlertContent.h"
#include "foundation/BrevokError.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace brevok {

/// One part of a bug report.
struct ReportItem {
    QString key;
    QString value;

    bool operator==(const ReportItem &) const = default;
};

/// What came of a bug report that was asked for, ready to be shown.
struct ReportOutcome {
    /// What is wrong with the form; an unreachable service; an answer; a transfer that failed.
    enum class Kind { Invalid, Unreachable, Answered, Failed };

    Kind kind = Kind::Answered;
    bool sent = false; ///< the service took it
    AlertContent alert; ///< localised

    /// The alert's texts in one line.
    [[nodiscard]] QString sentence() const;
};

/// Whether @p address looks like an e-mail address: something, then "@", then a domain of at least two parts.
[[nodiscard]] bool NSStringIsValidEmail(const QString &address);

/// What is wrong with the form, nothing when it can be sent.
[[nodiscard]] std::optional<ReportOutcome> formFault(const QString &email, const QString &note);

/// The body of a report: compact JSON.
[[nodiscard]] QByteArray bugReportBody(const QString &email, const QList<ReportItem> &items);

/// The outcome when the service cannot be reached, or not even the network.
[[nodiscard]] ReportOutcome unreachableOutcome(bool networkReachable);

/// What the service's answer means; logs it, without secrets.
[[nodiscard]] ReportOutcome answerOutcome(int status, const QByteArray &body);

/// The same for a transfer that failed.
[[nodiscard]] ReportOutcome failureOutcome(const std::optional<BrevokError> &error);

} // namespace brevok
