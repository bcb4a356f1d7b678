// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/NoticeView.h"

#include "foundation/UntrustedText.h"
#include "ui/widgets/PanelButtons.h"
#include "ui/widgets/PanelLabels.h"
#include "ui/widgets/PanelStyle.h"
#include "ui/widgets/TemplateImage.h"
#include "ui/widgets/TextFitting.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QEvent>
#include <QLabel>
#include <QPainter>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int smallImage = 24;
constexpr int largeImage = 56;

} // namespace

NoticeView::NoticeView(QWidget *parent)
    : QWidget(parent)
    , m_image(new QLabel(this))
    , m_title(new QLabel(this))
    , m_text(new SecondaryLabel(this))
    , m_button(new PanelButton(this))
{
    m_title->setTextFormat(Qt::PlainText);
    m_title->setObjectName(u"noticeTitle"_s);
    m_text->setObjectName(u"noticeText"_s);
    m_button->setObjectName(u"noticeButton"_s);
    m_title->setWordWrap(true);
    m_text->setWordWrap(true);
    m_button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(m_button, &QPushButton::clicked, this, &NoticeView::buttonClicked);
    layOut();
}

NoticeView::~NoticeView() = default;

void NoticeView::setNotice(const NoticeText &notice, bool wholePage)
{
    const bool appears = isHidden() && !notice.title.isEmpty();
    m_notice = notice;
    setVisible(!notice.title.isEmpty());
    if (wholePage != m_wholePage) {
        m_wholePage = wholePage;
        layOut();
    }
    refresh();
    if (appears && isVisible()) {
        QAccessibleEvent raised(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&raised);
    }
}

void NoticeView::layOut()
{
    delete layout();
    const Qt::Alignment aligned = m_wholePage ? Qt::AlignHCenter : Qt::AlignVCenter;
    auto *box = new QBoxLayout(m_wholePage ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, this);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(m_wholePage ? 6 : 1);
    texts->addWidget(m_title);
    texts->addWidget(m_text);
    // A strip has the columns of the rows below it.
    box->setSpacing(m_wholePage ? 14 : 16);
    box->setContentsMargins(m_wholePage ? QMargins(40, 0, 40, 48) : QMargins(19, 10, 11, 10));
    if (m_wholePage) {
        box->addStretch();
    }
    box->addWidget(m_image, 0, aligned);
    box->addLayout(texts, m_wholePage ? 0 : 1);
    box->addWidget(m_button, 0, aligned);
    if (m_wholePage) {
        box->addStretch();
    }
    const Qt::Alignment text = m_wholePage ? Qt::AlignHCenter : Qt::AlignLeading;
    m_title->setAlignment(text);
    m_text->setAlignment(text);
    setSizePolicy(QSizePolicy::Preferred, m_wholePage ? QSizePolicy::Expanding : QSizePolicy::Preferred);
}

void NoticeView::refresh()
{
    const int size = m_wholePage ? largeImage : smallImage;
    m_image->setPixmap(
        symbolPixmap(m_notice.image, PanelStyle::secondaryText(palette()), size, devicePixelRatioF()));
    m_title->setFont(PanelStyle::headingFont(m_wholePage ? 17 : 13));
    m_text->setFont(PanelStyle::secondaryFont());
    m_button->setFont(PanelStyle::font(13));
    m_title->setText(m_notice.title);
    constexpr qsizetype mostShown = 300;
    setBreakableText(*m_text, severalLines(m_notice.text, mostShown));
    setPlainToolTip(*m_text, m_notice.text.size() > mostShown ? m_notice.text : QString());
    m_button->setText(m_notice.button);
    m_button->setVisible(!m_notice.button.isEmpty());
    m_button->setProminent(m_wholePage);
    m_button->setAccessibleDescription(m_notice.title);
    setAccessibleName(m_notice.title);
    update();
}

void NoticeView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationFontChange) {
        refresh();
    }
    QWidget::changeEvent(event);
}

void NoticeView::paintEvent(QPaintEvent *)
{
    if (!m_wholePage) {
        QPainter painter(this);
        painter.fillRect(rect(), PanelStyle::hoverFill(palette()));
        painter.fillRect(QRect(0, height() - 1, width(), 1), PanelStyle::separator(palette()));
    }
}

} // namespace brevok
