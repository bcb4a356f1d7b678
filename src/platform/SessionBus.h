// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QTimer>

#include <memory>

class QFileSystemWatcher;

namespace brevok {

/// The message bus of the user's session, which may be missing, go, and come back. Main thread.
///
/// While it is missing, its socket's folder is watched; after a loss a bounded number of attempts is made as
/// well, at growing intervals, since not every bus has a socket in a folder. Nothing is done while it is
/// there.
class SessionBus final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SessionBus)

public:
    explicit SessionBus(QObject *parent = nullptr);
    ~SessionBus() override;

    /// Whether the bus started this program, because somebody called it.
    [[nodiscard]] static bool startedThisProgram();

    /// The connection as it is now; another one after returned().
    [[nodiscard]] const QDBusConnection &connection() const { return m_connection; }

    enum class Name { Ours, Theirs, NoBus };
    /// Asks for @p name, now and whenever the bus returns. While it is another's we wait in the line for it:
    /// nameAcquired() follows when it becomes ours.
    Name takeName(const QString &name);
    /// Gives up the name, or the place in the line.
    void leaveName();

Q_SIGNALS:
    void nameAcquired();
    /// The bus has ended; it may return.
    void gone();
    /// There is a new connection, on which nothing of ours is registered yet.
    void returned();

private Q_SLOTS:
    void lost();

private:
    void listen();
    void watchSocket();
    void socketFolderChanged();
    void attemptSoon();
    void attempt();
    void take(const QDBusConnection &fresh);

    QDBusConnection m_connection;
    QString m_name;
    std::unique_ptr<QFileSystemWatcher> m_folder; // while the bus is missing
    QTimer m_nextAttempt;
    int m_attempts = 0; ///< since the loss, or since something changed in the folder
    int m_connectionsMade = 0;
    bool m_attempting = false;
};

} // namespace brevok
