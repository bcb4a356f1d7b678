// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/BrevokBackgroundView.h"

#include "ui/panel/PanelLayout.h"
#include "ui/widgets/PanelStyle.h"

#include <QPainter>

namespace brevok {

BrevokBackgroundView::BrevokBackgroundView(QWidget *parent)
    : QWidget(parent)
{
}

BrevokBackgroundView::~BrevokBackgroundView() = default;

void BrevokBackgroundView::setFillColor(const QColor &colour)
{
    m_fillColor = colour;
    update();
}

QColor BrevokBackgroundView::fillColor() const
{
    return m_fillColor.isValid() ? m_fillColor : palette().color(QPalette::Window);
}

void BrevokBackgroundView::setArrowX(int x)
{
    if (x != m_arrowX) {
        m_arrowX = x;
        update();
    }
}

void BrevokBackgroundView::setUpward(bool upward)
{
    if (upward != m_upward) {
        m_upward = upward;
        update();
    }
}

void BrevokBackgroundView::setTranslucent(bool translucent)
{
    if (translucent != m_translucent) {
        m_translucent = translucent;
        update();
    }
}

QRegion BrevokBackgroundView::shape() const
{
    return {panelOutline(rect(), m_arrowX, m_upward).toFillPolygon().toPolygon()};
}

void BrevokBackgroundView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QColor border = PanelStyle::mixed(fillColor(), palette().color(QPalette::WindowText), 0.28);
    if (!m_translucent) {
        // The outline is the pixels of the shape that have a neighbour outside of it, and is whole.
        const QRegion all = shape();
        painter.fillRect(rect(), border);
        painter.setClipRegion(all & all.translated(1, 0) & all.translated(-1, 0) & all.translated(0, 1)
            & all.translated(0, -1));
        painter.fillRect(rect(), fillColor());
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(border);
    painter.setBrush(fillColor());
    painter.drawPath(panelOutline(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), m_arrowX, m_upward));
}

} // namespace brevok
