// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "client/CommandLine.h"

#include <QDBusMessage>
#include <QJsonArray>
#include <QObject>

#include <optional>

class QDBusPendingCall;
class QTimer;

namespace brevok::client {

/// Exit statuses of brevokctl.
enum class ExitStatus { Done = 0, Failed = 1, Usage = 2, Unreachable = 3 };

/// Carries out one command over the session bus and prints its result.
class CommandRunner final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CommandRunner)

public:
    /// @p password is asked only for a sign-in.
    CommandRunner(
        Command command, std::function<QString()> password, bool showProgress, QObject *parent = nullptr);
    ~CommandRunner() override;

    /// Sends the call; finished() follows, also when there is no bus.
    void start();

Q_SIGNALS:
    void finished(brevok::client::ExitStatus status);

private Q_SLOTS:
    void showProgress(const QString &prefix, const QString &plugin, qint64 done, qint64 expected);

private:
    void ask();
    [[nodiscard]] QDBusPendingCall call();
    void handle(const QDBusMessage &reply);
    void handleError(const QDBusMessage &error);
    void handleResult(const QDBusMessage &reply);
    void handleConverged(const QDBusMessage &reply);
    void handleMetrics(const QString &text);
    /// Ends a call that asked for @p result.
    void endWith(const QString &result, ExitStatus status = ExitStatus::Done);
    /// Ends a call whose result is how it went: done without @p failures, else @p failed.
    void end(const QStringList &failures, ExitStatus failed = ExitStatus::Failed);

    Command m_command;
    std::function<QString()> m_password;
    bool m_showProgress;
    bool m_progressShown = false;
    std::optional<QJsonArray> m_outcome; ///< of a call that installs or removes
    int m_timesAsked = 0; ///< for the status, after the first time
    bool m_ended = false;
    QTimer *m_timeout;
};

} // namespace brevok::client
