// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileState.h"

#include <sys/stat.h>

namespace brevok {

/// The state that the system's facts of a file tell.
[[nodiscard]] inline FileState fileState(const struct stat &facts)
{
    constexpr qint64 second = 1'000'000'000;
    return {.device = facts.st_dev,
        .inode = facts.st_ino,
        .size = facts.st_size,
        .modified = facts.st_mtim.tv_sec * second + facts.st_mtim.tv_nsec,
        .changed = facts.st_ctim.tv_sec * second + facts.st_ctim.tv_nsec};
}

} // namespace brevok
