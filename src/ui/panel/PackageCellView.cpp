// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/PackageCellView.h"

#include "ui/widgets/AccessibleRole.h"
#include "ui/widgets/PanelButtons.h"
#include "ui/widgets/PanelStyle.h"

#include <QEvent>
#include <QPainter>
#include <QTextBoundaryFinder>

namespace brevok {

namespace {

constexpr int iconSize = 32;
constexpr int barHeight = 4;

// What a reader sees as the first letter: an emoji may be several characters.
QString firstLetter(const QString &text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    const qsizetype end = finder.toNextBoundary();
    return end > 0 ? text.left(end).toUpper() : QString();
}

} // namespace

IconTile::IconTile(QWidget *parent)
    : QWidget(parent)
{
    setAccessibleRole(*this, QAccessible::Graphic);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

IconTile::~IconTile() = default;

void IconTile::setIcon(const QPixmap &icon, const QString &name)
{
    m_icon = icon;
    m_letter = firstLetter(name);
    update();
}

QSize IconTile::sizeHint() const
{
    return {iconSize, iconSize};
}

void IconTile::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    if (!m_icon.isNull()) {
        painter.drawPixmap(rect(), m_icon);
        return;
    }
    const QColor text = palette().color(QPalette::WindowText);
    painter.setPen(Qt::NoPen);
    painter.setBrush(PanelStyle::mixed(palette().color(QPalette::Window), text, 0.14));
    painter.drawRoundedRect(rect(), 7, 7);
    painter.setPen(PanelStyle::secondaryText(palette()));
    painter.setFont(PanelStyle::headingFont(15));
    painter.drawText(rect(), Qt::AlignCenter, m_letter);
}

ThinProgressBar::ThinProgressBar(QWidget *parent)
    : QWidget(parent)
{
    setAccessibleRole(*this, QAccessible::ProgressBar);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

ThinProgressBar::~ThinProgressBar() = default;

void ThinProgressBar::setPermille(int permille)
{
    if (permille != m_permille) {
        m_permille = permille;
        QAccessibleValueChangeEvent changed(this, permille);
        QAccessible::updateAccessibility(&changed);
        update();
    }
}

QSize ThinProgressBar::sizeHint() const
{
    return {80, barHeight};
}

void ThinProgressBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(PanelStyle::separator(palette()));
    painter.drawRoundedRect(rect(), barHeight / 2.0, barHeight / 2.0);
    QRectF filled(rect());
    filled.setWidth(width() * m_permille / 1000.0);
    if (layoutDirection() == Qt::RightToLeft) {
        filled.moveRight(width());
    }
    painter.setBrush(palette().color(QPalette::Highlight));
    painter.drawRoundedRect(filled, barHeight / 2.0, barHeight / 2.0);
}

PackageCellView::PackageCellView(QWidget *parent)
    : QWidget(parent)
{
    setAccessibleRole(*this, QAccessible::ListItem);
    setAttribute(Qt::WA_Hover);
}

PackageCellView::~PackageCellView() = default;

void PackageCellView::setPriority(bool priority)
{
    if (priority != m_priority) {
        m_priority = priority;
        update();
    }
}

void PackageCellView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_priority) {
        painter.fillRect(rect(), PanelStyle::priorityFill(palette()));
    }
    if (underMouse()) {
        painter.fillRect(rect(), PanelStyle::hoverFill(palette()));
    }
    painter.fillRect(QRect(0, height() - 1, width(), 1), PanelStyle::separator(palette()));
    if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing);
        drawFocusRing(painter, QRectF(rect()).adjusted(2, 1, -2, -2), 6, palette());
    }
}

} // namespace brevok
