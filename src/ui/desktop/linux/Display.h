// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

namespace brevok {

/// Whether the X server that DISPLAY names lets this process in.
[[nodiscard]] bool canOpenX11Display();

/// Whether anybody answers at the socket that WAYLAND_DISPLAY names, and the window library has what speaks
/// to it.
[[nodiscard]] bool canReachWaylandDisplay();

/// The number of the screen that DISPLAY names.
[[nodiscard]] int x11Screen();

} // namespace brevok
