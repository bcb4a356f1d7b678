// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Tasks.h"

#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
#include <chrono>

namespace brevok {

/// The one thread that a store writes on, and when it does. Main thread.
class StoreWorker final {
public:
    /// @p due begins the next batch.
    StoreWorker(std::chrono::milliseconds retry, Task due);
    ~StoreWorker();
    Q_DISABLE_COPY_MOVE(StoreWorker)

    /// Due on the next turn of the event loop, so that the changes of one turn make one batch.
    void dueSoon() { m_soon.start(); }
    /// Due when what failed is tried again.
    void dueLater() { m_retry.start(); }
    /// Nothing is due.
    void rest();

    /// Runs @p work on the thread, after what runs there, and @p done on a later turn of the event loop.
    void run(Task work, Task done = {});
    /// Waits until nothing runs; what the thread did is visible afterwards.
    /// @return false when something still runs after @p milliseconds
    bool wait(int milliseconds = -1);

private:
    QThreadPool m_thread;
    std::atomic<int> m_runs = 0;
    QTimer m_soon;
    QTimer m_retry;
};

} // namespace brevok
