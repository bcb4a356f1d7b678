// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/Terminal.h"

#include <cstdio>

#include <termios.h>
#include <unistd.h>

namespace brevok {

namespace {

// Switches the echo of a terminal off while it lives.
class Silence {
public:
    explicit Silence(bool wanted)
        : m_active(wanted && ::tcgetattr(STDIN_FILENO, &m_before) == 0)
    {
        if (m_active) {
            termios quiet = m_before;
            quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO);
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &quiet);
        }
    }

    ~Silence()
    {
        if (m_active) {
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &m_before);
        }
    }

    Q_DISABLE_COPY_MOVE(Silence)

private:
    termios m_before{};
    bool m_active;
};

} // namespace

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
    for (char c = 0; ::read(STDIN_FILENO, &c, 1) == 1 && c != '\n';) {
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
