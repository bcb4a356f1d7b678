// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/alerts/AlertDialog.h"

#include "foundation/Texts.h"
#include "ui/widgets/TemplateImage.h"
#include "ui/widgets/TextFitting.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>

namespace brevok {

namespace {

constexpr int margin = 20;
constexpr int gap = 16;
constexpr int iconSize = 48;
constexpr int textWidth = 380; // for a font of the usual size
constexpr int buttonWidth = 80;

QStyle::StandardPixmap styleIcon(AlertStyle style)
{
    switch (style) {
    case AlertStyle::Warning:
        return QStyle::SP_MessageBoxWarning;
    case AlertStyle::Informational:
        return QStyle::SP_MessageBoxInformation;
    case AlertStyle::Critical:
        break;
    }
    return QStyle::SP_MessageBoxCritical;
}

QLabel *makeText(const QString &text, const QString &name, QWidget *parent)
{
    auto *label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    setBreakableText(*label, text);
    return label;
}

Qt::WindowFlags frameFor(const AlertKeys &keys)
{
    const Qt::WindowFlags flags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint;
    return keys.onClose >= 0 ? flags | Qt::WindowCloseButtonHint : flags;
}

// Return presses the first button, Escape one named "Cancel" (or the only one there is), unless a button says
// otherwise of itself. The frame has a close button only where there is such a button to cancel with,
// whatever key presses that.
AlertKeys alertKeys(const QList<AlertButton> &buttons)
{
    AlertKeys keys;
    for (qsizetype i = 0; i < buttons.size(); ++i) {
        const AlertKey key = buttons.at(i).key;
        const bool both = key == AlertKey::ReturnAndEscape;
        if ((key == AlertKey::Return || both) && keys.onReturn < 0) {
            keys.onReturn = i;
        }
        if ((key == AlertKey::Escape || both) && keys.onEscape < 0) {
            keys.onEscape = i;
        }
    }
    if (keys.onReturn < 0 && !buttons.isEmpty() && buttons.first().key == AlertKey::Usual) {
        keys.onReturn = 0;
    }
    for (qsizetype i = 0; i < buttons.size() && keys.onClose < 0; ++i) {
        if (buttons.at(i).title == Texts::tr("Cancel") || buttons.size() == 1) {
            keys.onClose = i;
        }
    }
    if (keys.onEscape < 0 && keys.onClose >= 0 && buttons.at(keys.onClose).key == AlertKey::Usual) {
        keys.onEscape = keys.onClose;
    }
    return keys;
}

} // namespace

AlertDialog::AlertDialog(AlertContent content, QWidget *parent)
    : QDialog(parent)
    , m_content(std::move(content))
{
    if (m_content.buttons.isEmpty()) {
        m_content.buttons.append({Texts::tr("OK")});
    }
    m_keys = alertKeys(m_content.buttons);
    setWindowFlags(frameFor(m_keys));
    useApplicationIcon();
    setWindowTitle(Texts::tr("Tolvane Brevok"));
    setAccessibleName(m_content.messageText.value_or(QString()));
    setAccessibleDescription(m_content.informativeText.value_or(QString()));

    auto *whole = new QVBoxLayout(this);
    whole->setContentsMargins(margin, margin, margin, margin);
    whole->setSpacing(gap);
    auto *upper = new QHBoxLayout;
    upper->setSpacing(gap);
    addIcon(*upper);
    auto *column = new QVBoxLayout;
    addTexts(*column);
    addAccessory(*column);
    upper->addLayout(column, 1);
    whole->addLayout(upper, 1);
    addButtons(*whole);
    whole->setSizeConstraint(QLayout::SetFixedSize); // some window managers maximise whatever can be resized
}

AlertDialog::~AlertDialog()
{
    if (m_accessory) {
        m_accessory->hide();
        m_accessory->setParent(nullptr);
    }
}

void AlertDialog::addIcon(QBoxLayout &row)
{
    m_icon = new QLabel(this);
    m_icon->setFixedSize(iconSize, iconSize);
    row.addWidget(m_icon, 0, Qt::AlignTop);
    refreshIcon();
}

void AlertDialog::refreshIcon()
{
    const bool usual = m_content.icon.isEmpty() || TemplateImage(m_content.icon).isNull();
    QIcon icon;
    if (!usual) {
        icon = drawnIcon(m_content.icon);
    } else if (m_content.style == AlertStyle::Informational) {
        icon = drawnIcon(QStringLiteral("tolvane-brevok")); // nothing is wrong, so it shows who asks
    } else {
        icon = style()->standardIcon(styleIcon(m_content.style), nullptr, this);
    }
    m_icon->setPixmap(icon.pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
}

void AlertDialog::addTexts(QBoxLayout &column)
{
    auto *texts = new QWidget;
    auto *lines = new QVBoxLayout(texts);
    lines->setContentsMargins(0, 0, 0, 0);
    QLabel *message =
        makeText(m_content.messageText.value_or(QString()), QStringLiteral("messageText"), texts);
    QFont bold = message->font();
    bold.setBold(true);
    message->setFont(bold);
    lines->addWidget(message);
    if (!m_content.informativeText.value_or(QString()).isEmpty()) {
        lines->addWidget(makeText(*m_content.informativeText, QStringLiteral("informativeText"), texts));
    }
    lines->addStretch();

    const int width = std::max(textWidth, fontMetrics().averageCharWidth() * 50);
    const int wanted = lines->heightForWidth(width);
    const int room = screen()->availableGeometry().height() / 2;
    texts->setMinimumWidth(width);
    if (wanted <= room) {
        texts->setMinimumHeight(wanted);
        column.addWidget(texts);
        return;
    }
    auto *scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setMinimumSize(width + style()->pixelMetric(QStyle::PM_ScrollBarExtent) + gap, room);
    scroll->setWidget(texts);
    column.addWidget(scroll, 1);
}

void AlertDialog::addAccessory(QBoxLayout &column)
{
    m_accessory = m_content.accessory.value<QWidget *>();
    if (m_accessory) {
        column.addWidget(m_accessory);
        m_accessory->show();
    }
}

void AlertDialog::addButtons(QBoxLayout &column)
{
    auto *row = new QHBoxLayout;
    row->addStretch();
    m_buttons.resize(m_content.buttons.size());
    for (qsizetype i = m_buttons.size() - 1; i >= 0; --i) { // made as they are read
        const AlertButton &described = m_content.buttons.at(i);
        // A title is no mnemonic: an ampersand in a name is shown.
        auto *button = new QPushButton(QString(described.title).replace(u'&', QStringLiteral("&&")));
        button->setAccessibleName(described.title);
        button->setEnabled(described.enabled);
        button->setAutoDefault(false);
        button->setDefault(i == m_keys.onReturn);
        button->setMinimumWidth(buttonWidth);
        connect(button, &QPushButton::clicked, this, [this, i] { answer(i); });
        m_buttons[i] = button;
        row->addWidget(button);
    }
    column.addLayout(row);
    if (m_keys.onReturn >= 0) {
        m_buttons.at(m_keys.onReturn)->setFocus();
    }
}

void AlertDialog::answer(qsizetype button)
{
    end(alertFirstButton + static_cast<int>(button));
}

void AlertDialog::press(qsizetype button)
{
    if (button >= 0 && m_buttons.at(button)->isEnabled()) {
        answer(button);
    }
}

// What Escape does.
void AlertDialog::reject()
{
    press(m_keys.onEscape);
}

void AlertDialog::stop()
{
    end(alertStopped);
}

void AlertDialog::end(int response)
{
    m_response = response;
    done(QDialog::Accepted);
}

// Comes from the frame, or when the program is about to end, which nothing may refuse.
void AlertDialog::closeEvent(QCloseEvent *event)
{
    if (event->spontaneous()) {
        press(m_keys.onClose);
    } else if (isVisible()) {
        stop();
    }
    event->setAccepted(!isVisible());
}

void AlertDialog::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    QAccessibleEvent raised(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&raised);
}

void AlertDialog::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && isMinimized()) {
        // Some window managers minimise whatever the frame says; nobody would know what the program waits
        // for.
        setWindowState(windowState() & ~Qt::WindowMinimized);
    }
    if (m_icon != nullptr
        && (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange)) {
        refreshIcon();
    }
}

} // namespace brevok
