// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

namespace brevok {

/// Whether the desktop blends windows with what lies below them, so that they may be translucent. That can
/// change while the application runs.
[[nodiscard]] bool windowsAreBlended();

} // namespace brevok
