// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

namespace brevok {

/// The numeric id of the user who runs this process.
[[nodiscard]] quint32 currentUserId();

} // namespace brevok
