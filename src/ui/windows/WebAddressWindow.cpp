// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/WebAddressWindow.h"

#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QUrl>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestAddress = 4000;

// As a browser takes it; of what is no address at all, why.
QString shownAddress(const QUrl &url)
{
    return oneLine(url.isValid() ? url.toString(QUrl::FullyEncoded) : url.errorString(), longestAddress);
}

} // namespace

WebAddressWindow::WebAddressWindow(const MainBundle &bundle)
    : SmallWindow(bundle, u"WebAddress"_s, {460, 200})
    , m_address(new QPlainTextEdit(this))
{
    setWindowTitle(Texts::tr("Web Page"));
    QLabel &label =
        addText(u"label"_s, Texts::tr("No browser could be started. This is the address of the page:"));
    label.setBuddy(m_address);
    m_address->setObjectName(u"address"_s);
    m_address->setAccessibleName(Texts::tr("Address"));
    m_address->setReadOnly(true);
    m_address->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_address->setTabChangesFocus(true);
    m_address->setWordWrapMode(QTextOption::WrapAnywhere);
    m_address->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    add(*m_address);
    addButton(u"copy"_s, Texts::tr("Copy"),
        [this] { QGuiApplication::clipboard()->setText(m_address->toPlainText()); });
    addButton(u"close"_s, Texts::tr("Close"), [this] { close(); }).setDefault(true);
}

WebAddressWindow::~WebAddressWindow() = default;

void WebAddressWindow::showAddress(const QUrl &url, QWidget *asking)
{
    m_address->setPlainText(shownAddress(url));
    m_address->selectAll();
    m_address->setFocus(Qt::OtherFocusReason);
    showOver(asking);
}

} // namespace brevok
