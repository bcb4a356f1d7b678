// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>

namespace brevok::bench {

/// Tells the longest time for which the main thread's event loop was held: a line "name milliseconds" for
/// each job.
class Heartbeat {
public:
    Heartbeat()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { beat(); });
    }

    void watch(const char *name, const std::function<bool()> &work)
    {
        m_longest = 0;
        m_sinceBeat.start();
        m_timer.start();
        const bool done = work();
        beat();
        m_timer.stop();
        if (!done) {
            std::abort(); // what did nothing must not report
        }
        constexpr double nanosecondsOfMillisecond = 1e6;
        std::printf("%s\t%.1f\n", name, static_cast<double>(m_longest) / nanosecondsOfMillisecond);
        std::fflush(stdout);
    }

private:
    void beat()
    {
        m_longest = std::max(m_longest, m_sinceBeat.nsecsElapsed());
        m_sinceBeat.restart();
    }

    QTimer m_timer;
    QElapsedTimer m_sinceBeat;
    qint64 m_longest = 0;
};

} // namespace brevok::bench
