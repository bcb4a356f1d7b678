// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"
#include "service/Validator.h"

namespace brevok {

/// Which list of the service the stored state comes from. Empty when that is not known, or when the list is
/// to be read again each time, because what is wrong in it is told each time.
struct KeptList {
    QByteArray mark{}; ///< digest of the list's text
    Validator validator{};

    /// As an entry of the state store, with how many records the list left there.
    [[nodiscard]] Record toRecord(qsizetype records) const;
    /// Empty when not that many are there any more.
    [[nodiscard]] static KeptList fromRecord(const Record &record, qsizetype records);

    friend bool operator==(const KeptList &, const KeptList &) = default;
};

} // namespace brevok
