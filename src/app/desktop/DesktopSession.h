// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

namespace brevok {

/// Chooses how windows are shown and tries the display. Before the application object is made.
/// @return nothing, or one line that says why no window can be shown
[[nodiscard]] std::optional<QString> prepareDisplay();

/// Gives the application object its name, its translations, and the rule that it outlives its windows.
void prepareApplication();

} // namespace brevok
