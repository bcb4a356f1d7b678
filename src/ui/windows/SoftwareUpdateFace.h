// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "updates/UpdateState.h"

#include <QString>

namespace brevok {

/// What the window of an update shows of a state. A value; texts are localised.
struct SoftwareUpdateFace {
    enum class Bar { None, Busy, Part };

    QString headline{};
    QString text{};
    Bar bar = Bar::None;
    int permille = 0; ///< when Part
    QString progress{}; ///< beneath the bar
    bool notes = false;
    bool skip = false;
    bool later = false;
    bool cancel = false;
    QString install{}; ///< the button's title; empty when there is none
    QString ok{}; ///< the button's title; empty when there is none
};

[[nodiscard]] SoftwareUpdateFace faceFor(const UpdateState &state);

} // namespace brevok
