// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <compare>

namespace brevok {

/// The standard version comparator of the application-update framework.
///
/// A version is split into runs of digits, runs of letters, and single separators (periods, blanks, other
/// punctuation); everything from the first hyphen on is ignored. The leading runs of numbers and periods are
/// padded with ".0", so that 1.0 equals 1.0.0. Parts are compared pairwise: numbers as numbers, letters as
/// text, separators as equal; letters sort before anything else, so that 1.0b2 comes before 1.0. When one
/// version has parts left, it is the older one if the next part is letters and the newer one otherwise.
class StandardVersionComparator final {
public:
    static std::strong_ordering compareVersion(const QString &version, const QString &toVersion);
};

} // namespace brevok
