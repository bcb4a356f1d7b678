// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

namespace brevok {

/// Turns the system's requests to end this process (SIGTERM, SIGINT, SIGHUP), and those of another copy to
/// leave (SIGUSR1, see CopyLock), into signals on the main thread. One object a process.
class TerminationRequests final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TerminationRequests)

public:
    explicit TerminationRequests(QObject *parent = nullptr);
    ~TerminationRequests() override;

Q_SIGNALS:
    void requested();
    /// As soon as the work that is under way has ended.
    void handOverRequested();

private:
    int m_readEnd = -1;
};

} // namespace brevok
