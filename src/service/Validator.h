// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/HttpTransfers.h"

namespace brevok {

/// What a server calls the version of the thing that it sent, so that the next request can ask for any other
/// version. Empty where it told nothing usable.
struct Validator {
    QByteArray entityTag{};
    QByteArray lastModified{}; ///< only where there is no tag
    QByteArray scope{}; ///< digest of what was asked for, and in whose name: it counts for nothing else

    [[nodiscard]] bool isEmpty() const { return entityTag.isEmpty() && lastModified.isEmpty(); }
    friend bool operator==(const Validator &, const Validator &) = default;
};

/// The validator in the headers of a reply, if it tells two versions apart for certain and can stand in a
/// request.
[[nodiscard]] Validator validatorIn(const HeaderFields &headers, const QByteArray &scope);

/// The headers that ask for any other version; none for an empty validator.
[[nodiscard]] HeaderFields conditionOf(const Validator &validator);

/// Whether conditionOf() gives a header of this name.
[[nodiscard]] bool isCondition(const QByteArray &name);

} // namespace brevok
