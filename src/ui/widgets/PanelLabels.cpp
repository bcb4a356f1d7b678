// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/widgets/PanelLabels.h"

#include "foundation/UntrustedText.h"
#include "ui/widgets/AccessibleRole.h"
#include "ui/widgets/PanelStyle.h"
#include "ui/widgets/TextFitting.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>
#include <utility>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int gap = 6; // between text and detail
constexpr int failureMargin = 10;
constexpr double leastDetail = 0.25; // of the width, however long the text is
constexpr double mostDetail = 0.6;

// Whole words of a very long text, broken to a readable width; never as markup.
QString toolTipFor(const QString &text)
{
    return u"<p style='white-space: pre-wrap'>%1</p>"_s.arg(text.toHtmlEscaped());
}

} // namespace

SecondaryLabel::SecondaryLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

SecondaryLabel::~SecondaryLabel() = default;

void SecondaryLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(PanelStyle::secondaryText(palette()));
    const Qt::Alignment aligned = QStyle::visualAlignment(layoutDirection(), alignment());
    const int wrap = wordWrap() ? Qt::TextWordWrap : 0;
    painter.drawText(contentsRect(), static_cast<int>(aligned.toInt()) | wrap, text());
}

FailureLabel::FailureLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAlignment(Qt::AlignCenter);
    setContentsMargins(failureMargin, failureMargin, failureMargin, failureMargin);
    hide();
}

FailureLabel::~FailureLabel() = default;

void FailureLabel::setFailure(const QString &failure)
{
    constexpr qsizetype mostShown = 300;
    if (failure == m_failure) {
        return;
    }
    m_failure = failure;
    setText(breakable(severalLines(failure, mostShown)));
    setToolTip(failure.size() > mostShown ? plainToolTip(failure) : QString());
    setVisible(!failure.isEmpty());
    if (isVisible()) {
        QAccessibleEvent raised(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&raised);
    }
}

void FailureLabel::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(PanelStyle::priorityFill(palette()));
    painter.drawRoundedRect(rect(), failureMargin / 2.0, failureMargin / 2.0);
    painter.end();
    QLabel::paintEvent(event);
}

SeparatorLine::SeparatorLine(QWidget *parent)
    : QWidget(parent)
{
    setAccessibleRole(*this, QAccessible::Separator);
    setFixedHeight(1);
}

SeparatorLine::~SeparatorLine() = default;

void SeparatorLine::paintEvent(QPaintEvent *)
{
    QPainter(this).fillRect(rect(), PanelStyle::separator(palette()));
}

ElidedLabel::ElidedLabel(QWidget *parent)
    : QWidget(parent)
{
    setAccessibleRole(*this, QAccessible::StaticText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

ElidedLabel::~ElidedLabel() = default;

void ElidedLabel::setText(const QString &text, const QString &detail)
{
    if (text != m_text || detail != m_detail) {
        m_text = oneLine(text);
        m_detail = oneLine(detail);
        setAccessibleName(this->text());
        lay();
    }
}

QString ElidedLabel::text() const
{
    return m_detail.isEmpty() ? m_text : u"%1 %2"_s.arg(m_text, m_detail);
}

void ElidedLabel::setFonts(const QFont &font, const QFont &detailFont)
{
    m_detailFont = detailFont;
    setFont(font);
    updateGeometry();
    lay();
}

QSize ElidedLabel::sizeHint() const
{
    const int lines = m_shownMore.isEmpty() ? 1 : 2;
    return {fontMetrics().horizontalAdvance(m_text.left(80)), lines * fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {20, fontMetrics().height()};
}

void ElidedLabel::setMostLines(int lines)
{
    m_mostLines = lines;
    lay();
}

void ElidedLabel::setFailing(bool failing)
{
    m_failing = failing;
    update();
}

void ElidedLabel::setExplanation(const QString &explanation)
{
    m_explanation = explanation;
    lay();
}

// What fits on one line, up to a place where a line may end.
QString ElidedLabel::takeFirstLine(QString &rest) const
{
    if (m_mostLines < 2 || !m_detail.isEmpty() || fontMetrics().horizontalAdvance(rest) <= width()) {
        return std::exchange(rest, {});
    }
    QTextLayout layout(rest, font());
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(width());
    const qsizetype end = line.textLength();
    layout.endLayout();
    QString first = rest.left(end).trimmed();
    rest = rest.mid(end).trimmed();
    return first;
}

void ElidedLabel::lay()
{
    const bool hadMore = !m_shownMore.isEmpty();
    QString more = m_text;
    const QString first = takeFirstLine(more);
    m_shownMore = fontMetrics().elidedText(more, Qt::ElideRight, width());
    const QFontMetrics detailMetrics(m_detailFont);
    int detailWidth = 0;
    m_shownDetail.clear();
    if (!m_detail.isEmpty()) {
        const double free = width() - fontMetrics().horizontalAdvance(m_text) - gap;
        const double room = std::clamp(free, width() * leastDetail, width() * mostDetail);
        m_shownDetail = detailMetrics.elidedText(m_detail, Qt::ElideRight, static_cast<int>(room));
        detailWidth = detailMetrics.horizontalAdvance(m_shownDetail) + gap;
    }
    m_shownText = fontMetrics().elidedText(first, Qt::ElideRight, std::max(0, width() - detailWidth));
    const bool whole = m_shownText == first && m_shownMore == more && m_shownDetail == m_detail;
    setToolTip(!m_explanation.isEmpty() ? toolTipFor(m_explanation) : whole ? QString() : toolTipFor(text()));
    if (hadMore == m_shownMore.isEmpty()) {
        updateGeometry();
    }
    update();
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QColor secondary = PanelStyle::secondaryText(palette());
    const int textWidth = fontMetrics().horizontalAdvance(m_shownText);
    const int lineHeight = fontMetrics().height();
    const int lines = m_shownMore.isEmpty() ? 1 : 2;
    const int ascent = (height() - lines * lineHeight) / 2 + fontMetrics().ascent();
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    const int detailWidth = QFontMetrics(m_detailFont).horizontalAdvance(m_shownDetail);
    painter.setLayoutDirection(Qt::LeftToRight); // of the line; a text keeps its own direction
    painter.setPen(m_failing ? PanelStyle::failureText(palette())
            : m_secondary    ? secondary
                             : palette().color(QPalette::WindowText));
    painter.drawText(mirrored ? width() - textWidth : 0, ascent, m_shownText);
    const int moreWidth = fontMetrics().horizontalAdvance(m_shownMore);
    painter.drawText(mirrored ? width() - moreWidth : 0, ascent + lineHeight, m_shownMore);
    painter.setFont(m_detailFont);
    painter.setPen(secondary);
    painter.drawText(
        mirrored ? width() - textWidth - gap - detailWidth : textWidth + gap, ascent, m_shownDetail);
}

void ElidedLabel::resizeEvent(QResizeEvent *)
{
    lay();
}

void ElidedLabel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        lay();
    }
    QWidget::changeEvent(event);
}

} // namespace brevok
