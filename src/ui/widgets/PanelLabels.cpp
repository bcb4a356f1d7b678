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
    setBreakableText(*this, severalLines(failure, mostShown));
    setPlainToolTip(*this, failure.size() > mostShown ? failure : QString());
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
    const int more = m_shownMore.isEmpty() ? 0 : fontMetrics().height();
    const int detail = m_detailBelow ? QFontMetrics(m_detailFont).height() : 0;
    return {fontMetrics().horizontalAdvance(m_text.left(80)), fontMetrics().height() + more + detail};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {20, fontMetrics().height()};
}

void ElidedLabel::setMostLines(int lines)
{
    if (lines != m_mostLines) {
        m_mostLines = lines;
        lay();
    }
}

void ElidedLabel::setFailing(bool failing)
{
    m_failing = failing;
    update();
}

void ElidedLabel::setExplanation(const QString &explanation)
{
    if (explanation != m_explanation) {
        m_explanation = explanation;
        lay();
    }
}

// What fits on one line, up to a place where a line may end.
QString ElidedLabel::takeFirstLine(QString &rest) const
{
    if (m_mostLines < 2 || fontMetrics().horizontalAdvance(rest) <= width()) {
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
    const int height = sizeHint().height();
    QString more = m_text;
    const QString first = takeFirstLine(more);
    const bool wrapped = !more.isEmpty();
    layDetail(fontMetrics().horizontalAdvance(wrapped ? more : first), !wrapped);
    const bool beside = !m_shownDetail.isEmpty() && !m_detailBelow;
    const int taken = beside ? QFontMetrics(m_detailFont).horizontalAdvance(m_shownDetail) + gap : 0;
    const int room = std::max(0, width() - taken);
    m_shownText = fontMetrics().elidedText(first, Qt::ElideRight, wrapped ? width() : room);
    m_shownMore = fontMetrics().elidedText(more, Qt::ElideRight, room);
    updateToolTip(m_shownText == first && m_shownMore == more && m_shownDetail == m_detail);
    if (height != sizeHint().height()) {
        updateGeometry();
    }
    update();
}

void ElidedLabel::layDetail(int textWidth, bool mayGoBelow)
{
    const QFontMetrics metrics(m_detailFont);
    const int beside = width() - textWidth - gap;
    m_detailBelow =
        mayGoBelow && m_mostLines > 1 && !m_detail.isEmpty() && metrics.horizontalAdvance(m_detail) > beside;
    const int sign = metrics.horizontalAdvance(QChar(0x2026)); // is left of it in any case
    const int room = m_detailBelow ? width() : std::max(beside, sign);
    m_shownDetail = metrics.elidedText(m_detail, Qt::ElideRight, room);
}

void ElidedLabel::updateToolTip(bool whole)
{
    const QString unseen = whole ? QString() : text();
    setToolTip(plainToolTip(m_explanation.isEmpty() ? unseen : m_explanation));
    setAccessibleDescription(m_explanation);
}

void ElidedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QColor secondary = PanelStyle::secondaryText(palette());
    const QFontMetrics detailMetrics(m_detailFont);
    const int textWidth = fontMetrics().horizontalAdvance(m_shownText);
    const int top = (height() - sizeHint().height()) / 2;
    const int baseline = top + fontMetrics().ascent();
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    const auto draw = [&](const QString &text, int advance, int before, int y) {
        painter.drawText(mirrored ? width() - before - advance : before, y, text);
    };
    painter.setLayoutDirection(Qt::LayoutDirectionAuto); // each text has its own, and its sign at its end
    painter.setPen(m_failing ? PanelStyle::failureText(palette())
            : m_secondary    ? secondary
                             : palette().color(QPalette::WindowText));
    draw(m_shownText, textWidth, 0, baseline);
    const int moreWidth = fontMetrics().horizontalAdvance(m_shownMore);
    const int second = baseline + fontMetrics().height();
    draw(m_shownMore, moreWidth, 0, second);
    painter.setFont(m_detailFont);
    painter.setPen(secondary);
    const int detailWidth = detailMetrics.horizontalAdvance(m_shownDetail);
    if (m_detailBelow) {
        draw(m_shownDetail, detailWidth, 0, top + fontMetrics().height() + detailMetrics.ascent());
    } else if (m_shownMore.isEmpty()) {
        draw(m_shownDetail, detailWidth, textWidth + gap, baseline);
    } else {
        draw(m_shownDetail, detailWidth, moreWidth + gap, second);
    }
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
