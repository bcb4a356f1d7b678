// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok {

/// @p shown, fit to show whoever wrote it, with places to break inside its overlong words, for labels that
/// wrap.
[[nodiscard]] QString breakable(const QString &shown);

/// A tool tip that shows @p text as it stands, whatever mark-up it looks like.
[[nodiscard]] QString plainToolTip(const QString &text);

} // namespace brevok
