// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPainterPath>
#include <QRect>
#include <QString>

#include <optional>

namespace brevok {

/// The measurements of the panel, in points.
namespace PanelGeometry {
inline constexpr int width = 446;
inline constexpr int height = 694;
inline constexpr int halfWidth = 223;
inline constexpr int screenMargin = 8; ///< that stays free beside the panel
inline constexpr int rowHeight = 52;
inline constexpr int fallbackItemWidth = 24;
inline constexpr int arrowHeight = 9;
inline constexpr int arrowHalfWidth = 10;
inline constexpr int cornerRadius = 10;
inline constexpr int openMilliseconds = 100;
inline constexpr int closeMilliseconds = 100;
inline constexpr int orderOutMilliseconds = 200;
inline constexpr int slowFactor = 10; ///< how much longer the opening takes with Shift
} // namespace PanelGeometry

/// Where the panel goes, all in the coordinates of the virtual desktop (y grows downward).
struct PanelPlace {
    QRect item; ///< the rectangle that the panel grows out of: directly beside the item
    QRect panel;
    bool upward = false; ///< the panel stands above the item, as for a bar at the bottom
};

/// A screen, and what bars leave of it.
struct ScreenRoom {
    QRect whole;
    QRect free;
};

/// The panel's place for an item at @p itemFrame on @p screen; for an unknown one, in the middle below a bar
/// of @p barThickness. The panel is centred below the item and moved so far that it keeps its margin to the
/// sides of the screen. It opens upward where there is too little room below and more above, and is lower
/// than usual only where it would come closer than its margin to the end of the screen, or to a bar there.
[[nodiscard]] PanelPlace panelPlace(
    const std::optional<QRect> &itemFrame, const ScreenRoom &screen, int barThickness);

/// The middle of the item, seen from the panel's left edge.
[[nodiscard]] int arrowXFor(const QRect &item, const QRect &panel);

/// The outline of the panel's background in @p bounds, its arrow pointing at @p arrowX; a corner that it
/// needs is not round.
[[nodiscard]] QPainterPath panelOutline(const QRectF &bounds, int arrowX, bool upward);

/// How long the opening takes. Slow for exactly Shift and for exactly Shift and Option.
[[nodiscard]] int openDuration(Qt::KeyboardModifiers modifiers);
/// Whether the opening is to be logged: exactly Shift and Option.
[[nodiscard]] bool logsOpening(Qt::KeyboardModifiers modifiers);
/// "{{x, y}, {width, height}}", the platform's text form of a rectangle.
[[nodiscard]] QString rectText(const QRect &rect);

} // namespace brevok
