// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/BoundedWork.h"

#include <QSet>

#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>

namespace brevok {

namespace {

constexpr qsizetype mostHanging = 8;

// Where work hangs. Threads that hang may end after the program's static objects have gone.
struct Hanging {
    std::mutex mutex;
    QSet<QString> places;
};

Hanging &hanging()
{
    static auto &only = *new Hanging;
    return only;
}

// One piece of work, shared by the thread that does it and the one that waits; guarded by the mutex above.
struct Job {
    std::condition_variable end;
    Pulse pulse;
    bool done = false;
    bool left = false;
};

void finish(Job &job, const QString &place, const Task &cameBack)
{
    Hanging &all = hanging();
    std::unique_lock lock(all.mutex);
    job.done = true;
    if (job.left) {
        all.places.remove(place);
    }
    const bool late = job.left;
    lock.unlock();
    job.end.notify_one();
    if (late && cameBack) {
        cameBack();
    }
}

bool waitFor(Job &job, const QString &place, std::chrono::milliseconds patience)
{
    Hanging &all = hanging();
    std::unique_lock lock(all.mutex);
    quint64 before = 0;
    while (!job.end.wait_for(lock, patience, [&job] { return job.done; })) {
        const quint64 beats = job.pulse.beats();
        if (std::exchange(before, beats) == beats) {
            job.left = true;
            all.places.insert(place);
            return false;
        }
    }
    return true;
}

} // namespace

bool runBounded(const QString &place, std::function<void(Pulse &)> work, Task cameBack,
    std::chrono::milliseconds patience)
{
    {
        const std::scoped_lock lock(hanging().mutex);
        if (hanging().places.contains(place) || hanging().places.size() >= mostHanging) {
            return false;
        }
    }
    const auto job = std::make_shared<Job>();
    try {
        std::thread([job, place, work = std::move(work), cameBack = std::move(cameBack)] {
            work(job->pulse);
            finish(*job, place, cameBack);
        }).detach();
    } catch (const std::system_error &) {
        return false; // no thread to be had
    }
    return waitFor(*job, place, patience);
}

} // namespace brevok
