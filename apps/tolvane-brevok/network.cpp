// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// What speaks HTTP, as the application starts it with a request, and with it ends it.

#include "platform/linux/network/TransferServer.h"
#include "platform/linux/network/TransferWork.h"
#include "platform/StandardStreams.h"

#include <QFile>

#include <csignal>
#include <cstdio>
#include <string_view>
#include <unistd.h>

namespace {

// The address stands on standard input.
void printProxy()
{
    constexpr unsigned patience = 60; // seconds: a script that answers may hang, and its asker may have gone
    ::alarm(patience);
    QFile input;
    if (input.open(stdin, QIODevice::ReadOnly)) {
        std::fputs(brevok::systemProxyFor(QUrl::fromEncoded(input.readAll())).constData(), stdout);
    }
}

} // namespace

int main(int argc, char **argv)
{
    brevok::keepStandardStreams();
    if (argc == 2 && std::string_view(argv[1]) == "--proxy") {
        printProxy();
        return 0;
    }
    // It goes with the application, whatever a terminal or a session's end tells both.
    for (const int number : {SIGHUP, SIGINT, SIGTERM, SIGUSR1}) {
        std::signal(number, SIG_IGN);
    }
    brevok::serveTransfers();
    ::_exit(0); // what the libraries do at an end keeps the application from its own
}
