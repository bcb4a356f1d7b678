// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>
#include <QObject>
#include <QPointer>

#include <functional>

class QThreadPool;

namespace brevok {

using Task = std::function<void()>;

/// Whether the calling thread is the application's main thread.
[[nodiscard]] bool onMainThread();

/// Runs @p work on a background thread. The work gets values, not references to what the main thread owns,
/// and hands its result back with onMain(). These functions are the only hand-over between threads.
void inBackground(Task work);
/// The same on a thread of @p pool, which its owner waits for.
void inBackground(QThreadPool &pool, Task work);
/// The same for work that asks others on the network, who may never answer: no other work waits for it.
void inBackgroundApart(Task work);

/// Runs @p work on the main thread, on a later turn of its loop; dropped when @p context is gone by then.
/// @p context lives on the main thread.
void onMain(QObject *context, Task work);

/// Runs @p work in the background and @p then on the main thread with its result, unless @p context is gone
/// by then. Main thread.
template <typename Work, typename Then> void inBackgroundThen(QObject *context, Work work, Then then)
{
    inBackground([guard = QPointer<QObject>(context), work = std::move(work), then = std::move(then)] {
        const auto result = work();
        onMain(QCoreApplication::instance(), [guard, then, result] {
            if (guard) {
                then(result);
            }
        });
    });
}

/// Waits for running background work and starts no more; the last act of a program (and of a test that used
/// any).
/// @return false when work is still running after @p milliseconds
bool finishBackgroundWork(int milliseconds);

/// A queue of background work whose tasks run one at a time, in the order they were added.
class SerialQueue final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SerialQueue)

public:
    explicit SerialQueue(QObject *parent = nullptr);
    ~SerialQueue() override;

    /// Adds @p work. Main thread.
    void add(Task work);

private:
    void next();

    QList<Task> m_waiting;
    bool m_running = false;
};

} // namespace brevok
