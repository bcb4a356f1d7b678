// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelLayout.h"

#include <algorithm>
#include <cmath>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

int rounded(double value)
{
    return static_cast<int>(std::lround(value));
}

// The first coordinate beyond the rectangle; QRect::right() and bottom() are the last one within.
int endX(const QRect &rect)
{
    return rect.x() + rect.width();
}

int endY(const QRect &rect)
{
    return rect.y() + rect.height();
}

int middleOf(const QRect &item)
{
    return rounded(item.x() + item.width() / 2.0);
}

// What stands for the place below the item while no item is known.
QRect statusRectWithoutItem(const QRect &firstScreen, int barThickness)
{
    const int width = PanelGeometry::fallbackItemWidth;
    return {firstScreen.x() + rounded((firstScreen.width() - width) / 2.0), firstScreen.y() + barThickness,
        width, barThickness};
}

} // namespace

PanelPlace panelPlace(const std::optional<QRect> &itemFrame, const ScreenRoom &screen, int barThickness)
{
    using namespace PanelGeometry;
    const QRect &on = screen.whole;
    QRect item =
        itemFrame ? itemFrame->translated(0, itemFrame->height()) : statusRectWithoutItem(on, barThickness);
    const int below = endY(screen.free) - screenMargin - item.y();
    const int above = itemFrame ? itemFrame->y() - screen.free.y() - screenMargin : 0;
    const bool upward = below < height && above > below;
    const int room = upward ? above : below;
    const int panelHeight = std::min(height, std::max(room, rowHeight));
    if (upward) {
        item = itemFrame->translated(0, -itemFrame->height());
    }
    int x = rounded(item.x() + item.width() / 2.0 - halfWidth);
    x = std::min(x, endX(on) - screenMargin - width);
    x = std::max(x, on.x() + screenMargin);
    const int y = upward ? endY(item) - panelHeight : item.y();
    return {item, {x, y, width, panelHeight}, upward};
}

int arrowXFor(const QRect &item, const QRect &panel)
{
    return middleOf(item) - panel.x();
}

QPainterPath panelOutline(const QRectF &bounds, int arrowX, bool upward)
{
    using namespace PanelGeometry;
    const QRectF body = bounds.adjusted(0, upward ? 0 : arrowHeight, 0, upward ? -arrowHeight : 0);
    QPainterPath outline;
    outline.addRoundedRect(body, cornerRadius, cornerRadius);
    if (body.width() < 2 * (cornerRadius + arrowHalfWidth) || body.height() < 2 * cornerRadius) {
        return outline; // still growing out of the item
    }
    const double tip = std::clamp(bounds.left() + arrowX, body.left(), body.right());
    const double from = std::max(tip - arrowHalfWidth, body.left());
    const double to = std::min(tip + arrowHalfWidth, body.right());
    // The arrow overlaps the body a little, so that no seam shows between the two.
    const double base = upward ? body.bottom() - 1 : body.top() + 1;
    QPainterPath arrow;
    arrow.moveTo(from, base);
    arrow.lineTo(tip, upward ? bounds.bottom() : bounds.top());
    arrow.lineTo(to, base);
    arrow.closeSubpath();
    outline = outline.united(arrow);
    for (const bool left : {true, false}) {
        const double edge = left ? body.left() : body.right() - cornerRadius;
        if (left ? from < edge + cornerRadius : to > edge) {
            QPainterPath corner;
            corner.addRect(
                edge, upward ? body.bottom() - cornerRadius : body.top(), cornerRadius, cornerRadius);
            outline = outline.united(corner);
        }
    }
    return outline;
}

int openDuration(Qt::KeyboardModifiers modifiers)
{
    const bool slow = modifiers == Qt::ShiftModifier || logsOpening(modifiers);
    return PanelGeometry::openMilliseconds * (slow ? PanelGeometry::slowFactor : 1);
}

bool logsOpening(Qt::KeyboardModifiers modifiers)
{
    return modifiers == (Qt::ShiftModifier | Qt::AltModifier);
}

QString rectText(const QRect &rect)
{
    return u"{{%1, %2}, {%3, %4}}"_s.arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height());
}

} // namespace brevok
