// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

namespace brevok {

/// Why no window can be shown.
struct NoDisplay {
    QString line;
    bool named = false; ///< a display is named, but cannot be opened
};

/// Chooses how windows are shown and tries the display. Before the application object is made.
/// @return nothing when windows can be shown
[[nodiscard]] std::optional<NoDisplay> prepareDisplay();

/// Gives the application object its name, its translations, and the rule that it outlives its windows.
void prepareApplication();

} // namespace brevok
