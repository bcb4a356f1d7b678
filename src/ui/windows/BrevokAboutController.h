// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/windows/SmallWindow.h"

namespace brevok {

/// The About window: `icon`, `name`, `version`, `copyright`. All facts are read when it is made, which is
/// anew after each closing.
class BrevokAboutController final : public SmallWindow {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokAboutController)

public:
    explicit BrevokAboutController(const MainBundle &bundle);
    ~BrevokAboutController() override;
};

} // namespace brevok
