// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/StoreWorker.h"

#include <tuple>

namespace brevok {

namespace {

constexpr int threadExpiryMs = 2000;

} // namespace

StoreWorker::StoreWorker(std::chrono::milliseconds retry, Task due)
{
    m_thread.setMaxThreadCount(1);
    m_thread.setExpiryTimeout(threadExpiryMs);
    m_retry.setInterval(retry);
    for (QTimer *timer : {&m_soon, &m_retry}) {
        timer->setSingleShot(true);
        QObject::connect(timer, &QTimer::timeout, timer, due);
    }
}

StoreWorker::~StoreWorker()
{
    wait();
}

void StoreWorker::rest()
{
    m_soon.stop();
    m_retry.stop();
}

void StoreWorker::run(Task work, Task done)
{
    inBackground(m_thread, [this, work = std::move(work), done = std::move(done)] {
        work();
        m_runs.fetch_add(1, std::memory_order_release);
        onMain(&m_soon, done);
    });
}

// ThreadSanitizer sees the order, too.
void StoreWorker::wait()
{
    m_thread.waitForDone();
    std::ignore = m_runs.load(std::memory_order_acquire);
}

} // namespace brevok
