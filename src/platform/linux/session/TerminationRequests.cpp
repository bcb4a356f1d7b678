// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/TerminationRequests.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace brevok {

namespace {

constexpr std::array endings{SIGTERM, SIGINT, SIGHUP, SIGUSR1};

volatile int writeEnd = -1;

// A handler rather than a blocked signal: programs started from here must not inherit a mask.
void wake(int number)
{
    const char byte = number == SIGUSR1 ? 1 : 0;
    [[maybe_unused]] const auto written = ::write(writeEnd, &byte, 1);
}

} // namespace

TerminationRequests::TerminationRequests(QObject *parent)
    : QObject(parent)
{
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // the signals then end the process as they always do
    }
    m_readEnd = ends[0];
    writeEnd = ends[1];
    auto *notifier = new QSocketNotifier(m_readEnd, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        if (::read(m_readEnd, &byte, 1) == 1) {
            byte == 0 ? Q_EMIT requested() : Q_EMIT handOverRequested();
        }
    });
    struct sigaction action { };
    action.sa_handler = wake;
    action.sa_flags = SA_RESTART;
    for (const int number : endings) {
        ::sigaction(number, &action, nullptr);
    }
    sigset_t heldBack; // a request that came before anybody listened comes now
    ::sigemptyset(&heldBack);
    ::sigaddset(&heldBack, SIGUSR1);
    ::pthread_sigmask(SIG_UNBLOCK, &heldBack, nullptr);
}

TerminationRequests::~TerminationRequests()
{
    // The program ends already: asked once more in these moments, it is not to end as if it had failed.
    for (const int number : endings) {
        std::signal(number, SIG_IGN);
    }
    if (m_readEnd >= 0) {
        ::close(m_readEnd);
        ::close(writeEnd);
        writeEnd = -1;
    }
}

} // namespace brevok
