// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok {

/// The text encoded for use in a form: its UTF-8 bytes, a blank as "+", all but letters, digits, ".", "-",
/// "_" and "~" as "%" and two upper-case hexadecimal digits.
[[nodiscard]] QString urlencode(const QString &text);

} // namespace brevok
