// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Tasks.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QMetaObject>
#include <QPointer>
#include <QRunnable>
#include <QThread>
#include <QThreadPool>

#include <atomic>

namespace brevok {

namespace {

// Counts what was handed over. Every hand-over is a release, and every receipt an acquire that comes after
// it, so that they order what was written before with what is read after, also for tools that cannot look
// into the event loop and the thread pool.
std::atomic<quint64> handOvers = 0;

// Work on its way from one thread to another.
class HandedOver {
public:
    explicit HandedOver(Task work)
        : m_work(std::move(work))
    {
        handOvers.fetch_add(1, std::memory_order_release);
    }
    // Work that the end of the program overtakes is dropped by the receiving thread.
    ~HandedOver() { receive(); }
    Q_DISABLE_COPY_MOVE(HandedOver)

    Task take()
    {
        receive();
        return std::exchange(m_work, {});
    }

private:
    static void receive() { handOvers.fetch_add(0, std::memory_order_acq_rel); }

    Task m_work;
};

class PoolWork final : public QRunnable {
public:
    explicit PoolWork(Task work)
        : m_work(std::move(work))
    {
    }
    void run() override { m_work.take()(); }

private:
    HandedOver m_work;
};

// A thread that waits long for more work wakes up in an idle program, only to end.
constexpr int workerExpiryMs = 2000;

QThreadPool &workers()
{
    static QThreadPool &pool = []() -> QThreadPool & {
        QThreadPool &shared = *QThreadPool::globalInstance();
        shared.setExpiryTimeout(workerExpiryMs);
        return shared;
    }();
    return pool;
}

QThreadPool &workersApart()
{
    constexpr int most = 4;
    static QThreadPool &pool = []() -> QThreadPool & {
        auto &apart = *new QThreadPool; // never destroyed, as that would wait
        apart.setMaxThreadCount(most);
        apart.setExpiryTimeout(workerExpiryMs);
        return apart;
    }();
    return pool;
}

const QEvent::Type handOverEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

class MainWork final : public QEvent {
public:
    MainWork(QObject *context, Task work)
        : QEvent(handOverEvent)
        , m_work([context = QPointer<QObject>(context), work = std::move(work)] {
            if (context) {
                work();
            }
        })
    {
    }
    Task take() { return m_work.take(); }

private:
    HandedOver m_work;
};

// Receives the work for the main thread.
class MainReceiver final : public QObject {
public:
    MainReceiver() { moveToThread(QCoreApplication::instance()->thread()); }

protected:
    void customEvent(QEvent *event) override { static_cast<MainWork *>(event)->take()(); }
};

} // namespace

bool onMainThread()
{
    const QCoreApplication *application = QCoreApplication::instance();
    return application == nullptr || QThread::currentThread() == application->thread();
}

void inBackground(Task work)
{
    workers().start(new PoolWork(std::move(work)));
}

void inBackgroundApart(Task work)
{
    inBackground(workersApart(), std::move(work));
}

void inBackground(QThreadPool &pool, Task work)
{
    pool.start(new PoolWork(std::move(work)));
}

void onMain(QObject *context, Task work)
{
    static MainReceiver receiver;
    QCoreApplication::postEvent(&receiver, new MainWork(context, std::move(work)));
}

bool finishBackgroundWork(int milliseconds)
{
    constexpr int sliceMs = 10;
    workers().clear();
    workersApart().clear();
    const QDeadlineTimer deadline(milliseconds);
    while (!workers().waitForDone(sliceMs) || !workersApart().waitForDone(sliceMs)) {
        // What has ended is handed back: what was done must not count as still to be done.
        QCoreApplication::sendPostedEvents();
        if (deadline.hasExpired()) {
            return false;
        }
    }
    return true;
}

SerialQueue::SerialQueue(QObject *parent)
    : QObject(parent)
{
}

SerialQueue::~SerialQueue() = default;

void SerialQueue::add(Task work)
{
    m_waiting.append(std::move(work));
    if (!m_running) {
        next();
    }
}

void SerialQueue::next()
{
    m_running = !m_waiting.isEmpty();
    if (!m_running) {
        return;
    }
    inBackground([work = m_waiting.takeFirst(), queue = QPointer<SerialQueue>(this)] {
        work();
        onMain(QCoreApplication::instance(), [queue] {
            if (queue) {
                queue->next();
            }
        });
    });
}

} // namespace brevok
