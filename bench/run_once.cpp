// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "InstallWorkload.h"
#include "Workloads.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <array>
#include <cstdio>

using namespace brevok;

// run_once WORKLOAD TIMES: prepares the workload and runs it that many times. The difference between two
// counts of runs is the cost of the runs alone.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    const QString workload = words.value(1);
    const int times = words.value(2).toInt();
    qsizetype result = 0;
    if (workload.startsWith(QLatin1StringView("list"))) {
        const QByteArray list = bench::pluginList(20000);
        const std::array changed{bench::pluginList(20000, 3), bench::pluginList(20000, 4)};
        bench::ListWorkload ours;
        result = ours.run(list);
        for (int i = 0; i < times; ++i) {
            result += workload == QLatin1StringView("list-yardstick")
                ? QJsonDocument::fromJson(list).array().size()
                : workload == QLatin1StringView("list-again") ? ours.runAgain(list)
                : workload == QLatin1StringView("list-changed")
                ? ours.runAgain(changed.at(static_cast<size_t>(i) % changed.size()))
                : workload == QLatin1StringView("list-load") ? ours.load()
                                                             : ours.run(list);
        }
    } else if (workload.startsWith(QLatin1StringView("install-"))) {
        bench::InstallWorkload ours(workload.section(QLatin1Char('-'), 1).toInt());
        for (int i = 0; i < times; ++i) {
            result += ours.install();
            ours.remove();
        }
    } else {
        bench::StatusWorkload ours;
        for (int i = 0; i < times; ++i) {
            result += workload == QLatin1StringView("status-yardstick") ? ours.readPropertyLists()
                : workload == QLatin1StringView("status-first")         ? ours.runFirst()
                                                                        : ours.run();
        }
    }
    std::printf("%lld\n", static_cast<long long>(result));
    return 0;
}
