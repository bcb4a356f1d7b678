// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/widgets/SlimScrollBar.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace brevok {

namespace {

constexpr int barWidth = 8;
constexpr double leastHandle = 28;

} // namespace

SlimScrollBar::SlimScrollBar(QWidget *parent)
    : QScrollBar(Qt::Vertical, parent)
{
    setAttribute(Qt::WA_Hover);
}

SlimScrollBar::~SlimScrollBar() = default;

QSize SlimScrollBar::sizeHint() const
{
    return {barWidth, 80};
}

QRectF SlimScrollBar::handle() const
{
    const double range = maximum() - minimum();
    const double length = std::max(leastHandle, height() * pageStep() / std::max(1.0, range + pageStep()));
    const double top = range > 0 ? (height() - length) * (value() - minimum()) / range : 0;
    return {1.5, top, barWidth - 3.0, length};
}

void SlimScrollBar::moveTo(double y)
{
    const double free = height() - handle().height();
    if (free > 0) {
        setValue(minimum() + qRound((y - m_grip) / free * (maximum() - minimum())));
    }
}

void SlimScrollBar::paintEvent(QPaintEvent *)
{
    if (minimum() == maximum()) {
        return; // its column stays, so that nothing beside it moves
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor colour = palette().color(QPalette::WindowText);
    colour.setAlphaF(underMouse() || isSliderDown() ? 0.5F : 0.28F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRoundedRect(handle().adjusted(0, 2, 0, -2), barWidth / 2.0 - 1.5, barWidth / 2.0 - 1.5);
}

void SlimScrollBar::mousePressEvent(QMouseEvent *event)
{
    const QRectF at = handle();
    const double y = event->position().y();
    m_grip = y >= at.top() && y <= at.bottom() ? y - at.top() : at.height() / 2;
    moveTo(y);
}

void SlimScrollBar::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons().testFlag(Qt::LeftButton)) {
        moveTo(event->position().y());
    }
}

} // namespace brevok
