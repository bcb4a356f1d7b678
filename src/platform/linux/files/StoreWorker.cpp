// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/StoreWorker.h"

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
    m_soon.setSingleShot(true);
    m_retry.setSingleShot(true);
    QObject::connect(&m_soon, &QTimer::timeout, &m_soon, due);
    QObject::connect(&m_retry, &QTimer::timeout, &m_retry, std::move(due));
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
        if (done) {
            onMain(&m_soon, done);
        }
    });
}

// ThreadSanitizer sees the order, too.
bool StoreWorker::wait(int milliseconds)
{
    const bool done = m_thread.waitForDone(milliseconds);
    std::ignore = m_runs.load(std::memory_order_acquire);
    return done;
}

} // namespace brevok
