// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/widgets/PanelButtons.h"

#include "ui/widgets/PanelStyle.h"
#include "ui/widgets/TemplateImage.h"

#include <QKeyEvent>
#include <QPainter>

namespace brevok {

namespace {

constexpr int sideMargin = 11;
constexpr int buttonHeight = 30;
constexpr double radius = 7;
constexpr int symbolSize = 16;
constexpr int symbolButtonSize = 28;

// Buttons take arrow keys for themselves; in the panel these belong to the list around them. Return presses a
// button like Space does. Whether the event was dealt with.
bool handledKey(QAbstractButton &button, QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
        event->ignore();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat()) { // a key that is held presses once
            button.animateClick();
        }
        return true;
    default:
        return false;
    }
}

} // namespace

void drawFocusRing(QPainter &painter, const QRectF &bounds, double cornerRadius, const QPalette &palette)
{
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette.color(QPalette::Highlight), 2));
    painter.drawRoundedRect(bounds.adjusted(1, 1, -1, -1), cornerRadius, cornerRadius);
}

PanelButton::PanelButton(QWidget *parent)
    : QPushButton(parent)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus); // the ring is for the keyboard
    setAutoDefault(true);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

PanelButton::~PanelButton() = default;

void PanelButton::setProminent(bool prominent)
{
    m_prominent = prominent;
    update();
}

void PanelButton::setPlain(bool plain)
{
    m_plain = plain;
    update();
}

int PanelButton::widthFor(const QString &title, const QFont &font)
{
    return QFontMetrics(font).horizontalAdvance(title) + 2 * sideMargin;
}

QSize PanelButton::sizeHint() const
{
    return {widthFor(text(), font()), std::max(buttonHeight, fontMetrics().height() + 8)};
}

QSize PanelButton::minimumSizeHint() const
{
    return sizeHint();
}

QColor PanelButton::fill() const
{
    const QColor base = m_prominent ? PanelStyle::accent(palette()) : palette().color(QPalette::Button);
    const QColor text = m_prominent ? QColor(Qt::black) : palette().color(QPalette::ButtonText);
    if (!isEnabled()) {
        return PanelStyle::mixed(base, palette().color(QPalette::Window), 0.6);
    }
    if (isDown()) {
        return PanelStyle::mixed(base, text, 0.2);
    }
    return underMouse() ? PanelStyle::mixed(base, text, 0.09) : base;
}

void PanelButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(2.5, 0.5, -2.5, -0.5);
    QColor textColour = PanelStyle::secondaryText(palette());
    if (!m_plain) {
        const QColor base = fill();
        painter.setBrush(base);
        painter.setPen(
            m_prominent ? base : PanelStyle::mixed(base, palette().color(QPalette::ButtonText), 0.25));
        painter.drawRoundedRect(frame, radius, radius);
        if (isEnabled()) {
            textColour = palette().color(m_prominent ? QPalette::HighlightedText : QPalette::ButtonText);
        }
    }
    if (hasFocus()) {
        if (m_prominent) {
            // The accent on the accent would not be seen.
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(palette().color(QPalette::HighlightedText), 1.5));
            painter.drawRoundedRect(frame.adjusted(2.5, 2.5, -2.5, -2.5), radius - 2, radius - 2);
        }
        drawFocusRing(painter, QRectF(rect()), radius + 1, palette());
    }
    painter.setPen(textColour);
    painter.drawText(rect(), Qt::AlignCenter, text());
}

void PanelButton::keyPressEvent(QKeyEvent *event)
{
    if (!handledKey(*this, event)) {
        QPushButton::keyPressEvent(event);
    }
}

SymbolButton::SymbolButton(QWidget *parent)
    : QPushButton(parent)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus); // the ring is for the keyboard
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

SymbolButton::~SymbolButton() = default;

QSize SymbolButton::sizeHint() const
{
    return {symbolButtonSize, symbolButtonSize};
}

void SymbolButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame(rect());
    if (isEnabled() && (underMouse() || isDown())) {
        QColor fill = PanelStyle::hoverFill(palette());
        fill.setAlphaF(isDown() ? 0.2F : 0.1F);
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawRoundedRect(frame, radius, radius);
    }
    if (hasFocus()) {
        drawFocusRing(painter, frame, radius, palette());
    }
    QColor colour = PanelStyle::secondaryText(palette());
    if (!isEnabled()) {
        colour = PanelStyle::mixed(colour, palette().color(QPalette::Window), 0.65);
    } else if (underMouse()) {
        colour = palette().color(QPalette::WindowText);
    }
    const QPixmap pixmap = symbolPixmap(m_symbol, colour, symbolSize, devicePixelRatioF());
    painter.drawPixmap(
        QPointF((width() - symbolSize) / 2.0, (height() - symbolSize) / 2.0).toPoint(), pixmap);
}

void SymbolButton::keyPressEvent(QKeyEvent *event)
{
    if (!handledKey(*this, event)) {
        QPushButton::keyPressEvent(event);
    }
}

void SymbolButton::mouseReleaseEvent(QMouseEvent *event)
{
    m_clickedByMouse = true;
    QPushButton::mouseReleaseEvent(event);
    m_clickedByMouse = false;
}

} // namespace brevok
