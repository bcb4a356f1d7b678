// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// The longest time that the main thread's event loop was held, for each of the long jobs: a line "name
// milliseconds" each.

#include "InstallWorkload.h"
#include "support/FailingDisk.h"
#include "Workloads.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <functional>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

constexpr int listLength = 20000;

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

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    testing::FailingDisk disk;
    Heartbeat heart;
    {
        const QByteArray first = bench::pluginList(listLength);
        const QByteArray second = bench::pluginList(listLength, 3);
        bench::InstallWorkload catalogue(listLength);
        heart.watch("refresh of 20,000, all new", [&] { return catalogue.refresh(first); });
        heart.watch("refresh of 20,000, unchanged", [&] { return catalogue.refresh(first); });
        heart.watch("refresh of 20,000, each another version", [&] { return catalogue.refresh(second); });
        testing::FailingDisk::slowDown(100);
        heart.watch("the same with a slow disk", [&] { return catalogue.refresh(first); });
        testing::FailingDisk::heal();
    }
    {
        bench::InstallWorkload catalogue(listLength);
        heart.watch("installing 40 plug-ins", [&] { return catalogue.install() > 0; });
        heart.watch("removing them", [&] {
            catalogue.remove();
            return true;
        });
    }
    bench::StatusWorkload packages;
    heart.watch("status of 3,000 bundles, at first", [&] { return packages.runFresh() > 0; });
    heart.watch("status of 3,000 bundles, again", [&] { return packages.run() > 0; });
    return 0;
}
