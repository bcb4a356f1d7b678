// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/StandardStreams.h"

#include <cerrno>
#include <initializer_list>

#include <fcntl.h>
#include <unistd.h>

namespace brevok {

void keepStandardStreams()
{
    // The lowest free number is what open() gives.
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(stream, F_GETFD) < 0 && errno == EBADF) {
            ::open(stream == STDOUT_FILENO ? "/dev/full" : "/dev/null", O_RDWR);
        }
    }
}

} // namespace brevok
