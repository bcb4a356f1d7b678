// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/widgets/Spinner.h"

#include "ui/widgets/AccessibleRole.h"

#include <QPainter>

#include <algorithm>

namespace brevok {

namespace {

constexpr int spokes = 12;
constexpr int stepMilliseconds = 80;
constexpr int usualSize = 20;

} // namespace

Spinner::Spinner(QWidget *parent)
    : QWidget(parent)
{
    setAccessibleRole(*this, QAccessible::Animation);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    m_timer.setInterval(stepMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_step = (m_step + 1) % spokes;
        update();
    });
}

Spinner::~Spinner() = default;

void Spinner::startAnimation()
{
    m_animating = true;
    if (isVisible()) {
        m_timer.start();
    }
    update();
}

void Spinner::stopAnimation()
{
    m_animating = false;
    m_timer.stop();
    update();
}

QSize Spinner::sizeHint() const
{
    return {usualSize, usualSize};
}

void Spinner::paintEvent(QPaintEvent *)
{
    if (!m_animating) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(width() / 2.0, height() / 2.0);
    const double outer = std::min(width(), height()) / 2.0 - 1;
    QColor colour = palette().color(QPalette::WindowText);
    for (int i = 0; i < spokes; ++i) {
        const int age = (m_step - i + spokes) % spokes;
        colour.setAlphaF(0.75F - 0.055F * static_cast<float>(age));
        painter.setPen(QPen(colour, outer / 5, Qt::SolidLine, Qt::RoundCap));
        painter.save();
        painter.rotate(360.0 / spokes * i);
        painter.drawLine(QPointF(0, -outer * 0.55), QPointF(0, -outer));
        painter.restore();
    }
}

void Spinner::showEvent(QShowEvent *)
{
    if (m_animating) {
        m_timer.start();
    }
}

void Spinner::hideEvent(QHideEvent *)
{
    m_timer.stop();
}

} // namespace brevok
