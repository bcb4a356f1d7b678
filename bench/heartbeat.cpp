// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// How long the long jobs of the catalogue hold the main thread.

#include "Heartbeat.h"
#include "InstallWorkload.h"
#include "support/FailingDisk.h"
#include "Workloads.h"

using namespace brevok;
using bench::Heartbeat;
using namespace Qt::StringLiterals;

namespace {

constexpr int listLength = 20000;

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
