// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/widgets/WrappingLabel.h"

#include "foundation/UntrustedText.h"
#include "ui/widgets/TextFitting.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>

namespace brevok {

WrappingLabel::WrappingLabel(QWidget *parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse);
}

WrappingLabel::~WrappingLabel() = default;

void WrappingLabel::setText(const QString &text)
{
    QLabel::setText(breakable(text));
    setAccessibleName(severalLines(text));
}

QString WrappingLabel::selection() const
{
    return selectedText().remove(breakInWord);
}

void WrappingLabel::copy() const
{
    if (hasSelectedText()) {
        QGuiApplication::clipboard()->setText(selection());
    }
}

void WrappingLabel::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Copy)) {
        copy();
    } else {
        QLabel::keyPressEvent(event);
    }
}

void WrappingLabel::mouseReleaseEvent(QMouseEvent *event)
{
    QLabel::mouseReleaseEvent(event);
    QClipboard *clipboard = QGuiApplication::clipboard();
    if (hasSelectedText() && clipboard->supportsSelection()) {
        clipboard->setText(selection(), QClipboard::Selection);
    }
}

void WrappingLabel::contextMenuEvent(QContextMenuEvent *event)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    // The library's own title, which it translates.
    menu->addAction(QCoreApplication::translate("QWidgetTextControl", "&Copy"), this, &WrappingLabel::copy)
        ->setEnabled(hasSelectedText());
    menu->popup(event->globalPos());
}

} // namespace brevok
