// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/Terminal.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>

#include <termios.h>
#include <unistd.h>

namespace brevok {

namespace {

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

termios usual{}; // what the terminal was like; the signal handler needs it too

// Calls only what a signal handler may. The default action is back in place and follows.
void giveEchoBack(int signal)
{
    ::tcsetattr(STDIN_FILENO, TCSANOW, &usual);
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, "\n", 1);
    ::raise(signal);
}

// Switches the echo of a terminal off while it lives, and no longer than the program lives.
class Silence {
public:
    explicit Silence(bool wanted)
        : m_active(wanted && ::tcgetattr(STDIN_FILENO, &usual) == 0)
    {
        if (!m_active) {
            return;
        }
        struct sigaction action = {};
        action.sa_handler = giveEchoBack;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        // A process in the background may not change its terminal, unless it blocks the signal that says so.
        ::sigaddset(&action.sa_mask, SIGTTOU);
        for (size_t i = 0; i < endingSignals.size(); ++i) {
            ::sigaction(endingSignals[i], nullptr, &m_before[i]);
            if (m_before[i].sa_handler == SIG_DFL) {
                ::sigaction(endingSignals[i], &action, nullptr);
            }
        }
        termios quiet = usual;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
    }

    ~Silence()
    {
        if (!m_active) {
            return;
        }
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &usual);
        for (size_t i = 0; i < endingSignals.size(); ++i) {
            ::sigaction(endingSignals[i], &m_before[i], nullptr);
        }
    }

    Q_DISABLE_COPY_MOVE(Silence)

private:
    std::array<struct sigaction, endingSignals.size()> m_before{};
    bool m_active;
};

} // namespace

void outliveReaders()
{
    std::signal(SIGPIPE, SIG_IGN);
}

bool standardErrorIsTerminal()
{
    return ::isatty(STDERR_FILENO) != 0;
}

QString readSecret(const QString &prompt)
{
    const bool terminal = ::isatty(STDIN_FILENO) != 0;
    if (terminal) {
        std::fputs(qPrintable(prompt), stderr);
        std::fflush(stderr);
    }
    const Silence silence(terminal);
    QByteArray line;
    for (;;) {
        char c = 0;
        const ssize_t count = ::read(STDIN_FILENO, &c, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count != 1 || c == '\n') {
            break;
        }
        line.append(c);
    }
    if (terminal) {
        std::fputs("\n", stderr);
    }
    if (line.endsWith('\r')) {
        line.chop(1);
    }
    return QString::fromUtf8(line);
}

} // namespace brevok
