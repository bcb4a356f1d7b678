// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

class QToolBar;

namespace brevok {

/// Tells assistive technology that the checkable buttons of @p toolbar are the tabs of pages.
void announceAsTabs(QToolBar &toolbar);

} // namespace brevok
