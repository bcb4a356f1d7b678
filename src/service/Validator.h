// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/HttpTransfers.h"

namespace brevok {

/// What a server told of the state in which it sent something, so that it can be asked for that only if it is
/// another one. Empty where it told nothing usable.
struct Validator {
    QByteArray entityTag{};
    QByteArray lastModified{}; ///< only where there is no tag
    QByteArray scope{}; ///< digest of what was asked for, and in whose name: it counts for nothing else

    [[nodiscard]] bool isEmpty() const { return entityTag.isEmpty() && lastModified.isEmpty(); }
    friend bool operator==(const Validator &, const Validator &) = default;
};

/// What the headers of a reply say, where it can be trusted to tell two states apart and can stand in a
/// request.
[[nodiscard]] Validator validatorIn(const HeaderFields &headers, const QByteArray &scope);

/// The headers that ask for something only if it is in another state; none for an empty one.
[[nodiscard]] HeaderFields conditionOf(const Validator &validator);

/// Whether conditionOf() gives a header of this name.
[[nodiscard]] bool isCondition(const QByteArray &name);

} // namespace brevok
