// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "client/CommandLine.h"

#include <QDBusMessage>
#include <QJsonDocument>
#include <QObject>

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
    [[nodiscard]] QDBusPendingCall call();
    [[nodiscard]] QDBusPendingCall callForTarget();
    void handle(const QDBusMessage &reply);
    void handleError(const QDBusMessage &error);
    void printResult(const QDBusMessage &reply);
    void printFailures(const QStringList &failures);
    void printDocument(const QJsonObject &document);
    void end(ExitStatus status, const QString &message = {});

    Command m_command;
    std::function<QString()> m_password;
    bool m_showProgress;
    bool m_progressShown = false;
    bool m_ended = false;
    QTimer *m_timeout;
};

} // namespace brevok::client
