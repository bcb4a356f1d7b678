// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

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
    static void slowDown(int milliseconds);
    /// That were written since the last call of failAfter() or heal().
    [[nodiscard]] static qint64 bytes();
};

} // namespace brevok::testing
