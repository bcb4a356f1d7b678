// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok {

/// @p text with places to break inside its overlong words, for labels that wrap.
[[nodiscard]] QString breakable(const QString &text);

/// @p text in one line: line breaks and other control characters become blanks.
[[nodiscard]] QString singleLine(const QString &text);

/// A tool tip that shows @p text as it stands, whatever mark-up it looks like.
[[nodiscard]] QString plainToolTip(const QString &text);

} // namespace brevok
