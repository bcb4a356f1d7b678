// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "daemon/HelperProgram.h"
#include "foundation/Log.h"
#include "platform/StandardStreams.h"

#include <QCoreApplication>

#include <cstdio>

#include <sys/stat.h>

namespace {

constexpr auto help = "Usage: tolvane-brevok-helper [OPTION]...\n"
                      "The privileged helper of Tolvane Brevok; the system's message bus starts it.\n"
                      "\n"
                      "  --install            install this program as the system's helper, then exit\n"
                      "  --remove             remove what --install put in place, then exit\n"
                      "  --obey               do either as told by lines on standard input\n"
                      "  --prefix DIR         do so under DIR instead of /\n"
                      "  --address ADDRESS    the bus to serve on instead of the system's\n"
                      "  --state DIR          the helper's own folder (/var/lib/tolvane-brevok-helper)\n"
                      "  --idle-seconds N     leave after N seconds without a call (300)\n"
                      "  --version, --help    print and exit\n";

} // namespace

int main(int argc, char **argv)
{
    brevok::keepStandardStreams();
    ::umask(S_IWGRP | S_IWOTH);
    const QCoreApplication application(argc, argv);
    brevok::installLogFormat();
    QString complaint;
    const auto options = brevok::parseHelperOptions(QCoreApplication::arguments().mid(1), &complaint);
    if (!options) {
        std::fprintf(stderr, "tolvane-brevok-helper: %s\n", qPrintable(complaint));
        return 2;
    }
    if (options->task == brevok::HelperOptions::Task::ShowHelp) {
        std::fputs(help, stdout);
        return 0;
    }
    if (options->task == brevok::HelperOptions::Task::ShowVersion) {
        std::puts("tolvane-brevok-helper " BREVOK_VERSION);
        return 0;
    }
    return brevok::runHelper(*options);
}
