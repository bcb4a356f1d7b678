// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/windows/SmallWindow.h"

namespace brevok {

/// The window of a check for updates that the user asked for: `icon`, `indicator`. The check's end closes it.
class BrevokUpdateProgressController final : public SmallWindow {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokUpdateProgressController)

public:
    explicit BrevokUpdateProgressController(const MainBundle &bundle);
    ~BrevokUpdateProgressController() override;

    /// Closes the window; the check goes on.
    void cancel();
};

} // namespace brevok
