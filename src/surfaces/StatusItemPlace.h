// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

#include <optional>

class QScreen;

namespace brevok {

/// Where the status item is, for the panel that opens under it. Main thread; asked anew at every opening.
class StatusItemPlace {
public:
    StatusItemPlace() = default;
    virtual ~StatusItemPlace() = default;
    Q_DISABLE_COPY_MOVE(StatusItemPlace)

    /// The item's frame in the coordinates of the virtual desktop; where the bar does not tell it, a small
    /// frame around the pointer that clicked. Nothing when neither is known.
    [[nodiscard]] virtual std::optional<QRect> frameOnScreen() const = 0;
    /// The screen that the item is on, null when unknown.
    [[nodiscard]] virtual QScreen *screen() const = 0;
};

} // namespace brevok
