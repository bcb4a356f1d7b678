// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QString>

#include <optional>
#include <utility>

namespace brevok {

/// Why something could not be done: the same fact for a person, and as exactly as it is known.
struct Cause {
    Cause(int systemCode, QString reasonText = {}, QString exactText = {})
        : code(systemCode)
        , reason(std::move(reasonText))
        , exactly(std::move(exactText))
    {
    }

    int code; ///< the system's errno
    QString reason; ///< for a person; what the code says when empty
    QString exactly; ///< for the log; the system's own words when empty
};

/// An error of the domain of files: @p operation is what could not be done, @p path what it was done to. Its
/// one detailed error is the cause in a person's words.
[[nodiscard]] BrevokError fileError(const QString &operation, const QString &path, const Cause &cause);

/// Puts that error into @p error, unless that is null. @return false
bool failWith(
    std::optional<BrevokError> *error, const QString &operation, const QString &path, const Cause &cause);

} // namespace brevok
