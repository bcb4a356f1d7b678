// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Tasks.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>

namespace brevok {

/// Work that takes long in good health beats now and then, so that only work that stands still counts as
/// hung.
class Pulse final {
public:
    void beat() { m_beats.fetch_add(1, std::memory_order_relaxed); }
    [[nodiscard]] quint64 beats() const { return m_beats.load(std::memory_order_relaxed); }

private:
    std::atomic<quint64> m_beats = 0;
};

/// How long a disk may keep silent.
inline constexpr std::chrono::milliseconds patienceWithDisks(5000);

/// Runs @p work, which asks a disk or a mount that may never answer, on a thread of its own, and waits for
/// it. Work without a beat for @p patience is left to itself; while it hangs, no other work at the same @p
/// place is begun, and none anywhere when eight hang. @p cameBack runs on the thread of work that was left,
/// when it ends after all. For background threads; the work gets values, as it may outlive everything.
/// @return whether the work is done
bool runBounded(const QString &place, std::function<void(Pulse &)> work, Task cameBack = {},
    std::chrono::milliseconds patience = patienceWithDisks);

/// As runBounded(). @return what @p work gave; nothing when it did not come back
template <typename Result>
std::optional<Result> bounded(const QString &place, std::function<Result(Pulse &)> work, Task cameBack = {},
    std::chrono::milliseconds patience = patienceWithDisks)
{
    auto result = std::make_shared<std::optional<Result>>();
    const bool done = runBounded(
        place, [result, work = std::move(work)](Pulse &pulse) { result->emplace(work(pulse)); },
        std::move(cameBack), patience);
    return done ? std::move(*result) : std::nullopt;
}

} // namespace brevok
