// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>

/// Where icon and number stand in the status item. Values in, values out; points unless it says pixels.
namespace brevok::statusitem {

/// The length that a new item is asked for.
inline constexpr double initialLength = 24.0;
/// Bars above this height get a square, large enough to show a badge, in place of a small icon in a wide
/// item.
inline constexpr double highestWideBar = 36.0;
inline constexpr double padding = 8.0; ///< left and right of the icon together
inline constexpr double numberGap = 4.0; ///< between icon and number
/// From the lower edge to the line that the number stands on.
inline constexpr double numberBaseline = 3.0;

/// The number as text: nothing for 0, else plain decimal digits.
[[nodiscard]] QString countText(qint64 updates);

[[nodiscard]] double itemLength(double imageWidth, double textWidth);

/// Below this side in pixels, outlines of digits fall between the pixels: the badge has digits drawn by
/// pixels.
inline constexpr int smallestSideForOutlines = 28;
inline constexpr int smallDigitHeight = 7;
inline constexpr int smallDigitAdvance = 5; ///< one clear pixel included

/// Lower left corners, with the y axis pointing up as bars measure.
struct Layout {
    QPointF image;
    QPointF text;
};
/// @p button is the size of what is drawn into, all zeros where there is none.
[[nodiscard]] Layout layout(const QSizeF &button, const QSizeF &image, double textWidth);

/// The bitmap's size in pixels: whole points, times the screen's factor.
[[nodiscard]] QSize bitmapSize(double length, double thickness, double devicePixelRatio);

/// Whether a place of @p granted pixels shows the wide layout (icon and number side by side) rather than a
/// square with a badge, for an item of @p length pixels. Without a number there is no telling by the shape:
/// the place is wide when it is as long as was asked for, or was wide before.
[[nodiscard]] bool isWide(const QSize &granted, double length, bool hasNumber, bool wasWide);

/// The number as the badge of a square of @p side pixels; what has no room there is rounded down to a text
/// such as "99+".
[[nodiscard]] QString badgeText(qint64 updates, int side);

/// A badge of @p characters at the lower right corner of a square, in whole pixels, y axis pointing down.
struct Badge {
    QRect pill; ///< null without a number
    int gap = 0; ///< width of the clear line between icon and badge
    int digitHeight = 0;
};
[[nodiscard]] Badge badge(int side, qsizetype characters);

} // namespace brevok::statusitem
