// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "daemon/HelperRequest.h"
#include "platform/linux/files/GuardedFileOperations.h"
#include "platform/linux/files/WorkJournal.h"
#include "platform/linux/privileges/BorrowedRights.h"

#include <functional>

namespace brevok {

using SourcePtr = std::shared_ptr<GuardedFileOperations::Source>;

struct OpenedSource {
    SourcePtr source{}; ///< null when it is refused
    HelperAnswer refusal{};
};
/// Opens the source of an install for the user @p user. When somebody @p isAsked, the bytes that are
/// installed must be those of now. Blocks.
[[nodiscard]] OpenedSource openSource(const HelperRequest &request, quint32 user, bool isAsked);

/// Copies the bytes of the source, so that nobody else can change them; to files in @p scratch where memory
/// is short. Blocks. @return the answer when that fails
[[nodiscard]] std::optional<HelperAnswer> takeSource(
    GuardedFileOperations::Source &source, const QString &scratch);

/// What a request came to, and what remains to be done once that was told; blocks too.
struct WorkDone {
    HelperAnswer answer{};
    std::function<void()> rest{};
};

/// Does what the request of @p caller asks for, with the installer's own operations. Blocks.
[[nodiscard]] WorkDone carryOut(const HelperRequest &request, const UserRights &caller,
    const SourcePtr &source, const WorkJournal &journal);

/// Makes good what a killed process left of a piece of work, and says so in the log. Blocks.
void repairInterruptedWork(const WorkJournal &journal, const WorkJournal::Entry &entry);

} // namespace brevok
