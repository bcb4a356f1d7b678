// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "daemon/HelperRequest.h"
#include "platform/linux/GuardedFileOperations.h"
#include "platform/linux/WorkJournal.h"

#include <functional>

namespace brevok {

/// Opens the source of an install for the user @p user. When somebody @p isAsked, the bytes that are
/// installed must be those of now. Blocks. @return nothing with the refusal in @p answer
[[nodiscard]] std::shared_ptr<GuardedFileOperations::Source> openSource(
    const HelperRequest &request, quint32 user, bool isAsked, HelperAnswer *answer);

/// What a request came to, and what remains to be done once that was told; blocks too.
struct WorkDone {
    HelperAnswer answer{};
    std::function<void()> rest{};
};

/// Does what the request of the user @p user asks for, with the installer's own operations. Blocks.
[[nodiscard]] WorkDone carryOut(const HelperRequest &request, quint32 user,
    const std::shared_ptr<GuardedFileOperations::Source> &source, const WorkJournal &journal);

/// Ends what a killed process left, one log line for each item that was touched. Blocks.
void repairInterruptedWork(const WorkJournal &journal);

} // namespace brevok
