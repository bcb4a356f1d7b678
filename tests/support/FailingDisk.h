// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

#include <atomic>

namespace brevok::testing {

/// Stands between SQLite and the disk while it lives: counts what is written, and fails as a full disk does.
/// Made before the first database is opened; one at a time.
class FailingDisk final {
public:
    FailingDisk();
    ~FailingDisk();
    Q_DISABLE_COPY_MOVE(FailingDisk)

    /// Every change of a file fails after the next @p writes ones.
    static void failAfter(int writes);
    static void heal();
    /// Every wait for the disk takes that long from now on, one under way too.
    static void slowDown(int milliseconds) { syncMs = milliseconds; }
    /// Changes that were tried, and bytes that were written, since the last call of failAfter() or heal().
    [[nodiscard]] static int writes() { return tried; }
    [[nodiscard]] static qint64 bytes() { return written; }

    inline static std::atomic<int> tried = 0;
    inline static std::atomic<qint64> written = 0;
    inline static std::atomic<int> syncMs = 0;
};

} // namespace brevok::testing
