// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/AnimatedTabView.h"

#include <QStyle>

namespace brevok {

namespace {

constexpr int slideMilliseconds = 150;
constexpr int slideDistance = 48;

} // namespace

AnimatedTabView::AnimatedTabView(QWidget *parent)
    : QStackedWidget(parent)
{
    m_slide.setDuration(slideMilliseconds);
    m_slide.setEasingCurve(QEasingCurve::OutCubic);
    m_slide.setEndValue(0);
    connect(&m_slide, &QVariantAnimation::valueChanged, this, [this](const QVariant &offset) {
        if (QWidget *page = currentWidget()) {
            page->move(offset.toInt(), page->y());
        }
    });
}

AnimatedTabView::~AnimatedTabView() = default;

void AnimatedTabView::setAnimated(bool animated)
{
    m_animated = animated;
}

void AnimatedTabView::showPage(QWidget *page)
{
    if (page == currentWidget()) {
        return;
    }
    const bool fromEnd = (indexOf(page) > currentIndex()) != (layoutDirection() == Qt::RightToLeft);
    m_slide.stop();
    setCurrentWidget(page);
    if (m_animated && isVisible() && style()->styleHint(QStyle::SH_Widget_Animation_Duration) > 0) {
        m_slide.setStartValue(fromEnd ? slideDistance : -slideDistance);
        m_slide.start();
    }
}

} // namespace brevok
