// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/SmallWindow.h"

#include "ui/widgets/FocusReturn.h"
#include "ui/widgets/TextFitting.h"
#include "ui/windows/ApplicationFacts.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int iconBeside = 64;
constexpr int iconAbove = 96;
constexpr int margin = 20;
constexpr int gap = 16;

} // namespace

SmallWindow::SmallWindow(const MainBundle &bundle, const QString &name, QSize size, Arrangement arrangement)
    : m_column(new QVBoxLayout)
    , m_buttons(new QHBoxLayout)
    , m_centred(arrangement == Arrangement::BelowIcon)
{
    setObjectName(name);
    resize(size);
    auto *icon = new QLabel(this);
    icon->setObjectName(u"icon"_s);
    const int side = m_centred ? iconAbove : iconBeside;
    icon->setPixmap(applicationIcon(bundle).pixmap(QSize(side, side), devicePixelRatioF()));
    icon->setMinimumSize(side, side);
    icon->setAlignment(Qt::AlignCenter);
    auto *upper = new QBoxLayout(m_centred ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    upper->setSpacing(m_centred ? gap / 2 : gap);
    upper->addWidget(icon, 0, m_centred ? Qt::Alignment() : Qt::AlignTop);
    upper->addLayout(m_column, 1);
    m_column->setSpacing(gap / 2);
    m_buttons->addStretch();
    auto *whole = new QVBoxLayout(this);
    whole->setContentsMargins(margin, margin, margin, margin);
    whole->setSpacing(gap);
    whole->addLayout(upper, 1);
    whole->addLayout(m_buttons);
}

SmallWindow::~SmallWindow() = default;

void SmallWindow::done(int result)
{
    const bool hasFocus = isActiveWindow();
    QDialog::done(result);
    if (hasFocus) {
        returnFocus(*this, parentWidget());
    }
}

void SmallWindow::showWindow()
{
    show();
    raise();
    activateWindow();
}

void SmallWindow::showOver(QWidget *window)
{
    if (!isVisible()) {
        setParent(window, Qt::Dialog);
        setWindowModality(window != nullptr ? Qt::WindowModal : Qt::NonModal);
        stayAbove(*this, window); // again, where it gave the focus back
    }
    showWindow();
}

QLabel &SmallWindow::addText(const QString &name, const QString &text)
{
    auto *label = new QLabel(this);
    setBreakableText(*label, text);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    if (m_centred) {
        label->setAlignment(Qt::AlignCenter);
    }
    add(*label);
    return *label;
}

void SmallWindow::add(QWidget &widget)
{
    m_column->addWidget(&widget);
    widget.raise(); // screen readers follow the order of what lies above each other
}

void SmallWindow::addSpace()
{
    m_column->addStretch();
}

QPushButton &SmallWindow::addButton(
    const QString &name, const QString &title, const std::function<void()> &pressed)
{
    auto *button = new QPushButton(title, this);
    button->setObjectName(name);
    connect(button, &QPushButton::clicked, this, [pressed] { pressed(); });
    m_buttons->addWidget(button);
    return *button;
}

} // namespace brevok
