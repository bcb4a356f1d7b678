// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelOptionsMenu.h"

#include "foundation/Texts.h"
#include "ui/widgets/PanelButtons.h"
#include "ui/widgets/PanelStyle.h"

#include <cmath>

namespace brevok {

PanelOptionsMenu::PanelOptionsMenu(SymbolButton &button, const QList<Command> &commands, QObject *parent)
    : QObject(parent)
    , m_button(button)
    , m_menu(new QMenu(&button))
    , m_commands(commands)
{
    for (const Command &command : m_commands) {
        if (!command.title) {
            m_menu->addSeparator();
            continue;
        }
        QAction *action = m_menu->addAction(QString());
        action->setObjectName(command.objectName);
        action->setShortcut(command.shortcut);
        action->setMenuRole(QAction::NoRole);
        connect(action, &QAction::triggered, this, [run = command.run] { run(); });
        button.window()->addAction(action); // for its shortcut while the menu is closed
    }
    connect(&button, &QPushButton::clicked, this, &PanelOptionsMenu::open);
    connect(m_menu, &QMenu::aboutToShow, this, &PanelOptionsMenu::beforeMenuOpen);
    connect(m_menu, &QMenu::aboutToHide, this, &PanelOptionsMenu::swapTabPanel);
    updateTexts();
    swapTabPanel();
}

PanelOptionsMenu::~PanelOptionsMenu() = default;

void PanelOptionsMenu::updateTexts()
{
    m_button.setAccessibleName(Texts::tr("Options"));
    m_button.setToolTip(Texts::tr("Options").toHtmlEscaped());
    const QList<QAction *> actions = m_menu->actions();
    for (qsizetype i = 0; i < m_commands.size(); ++i) {
        if (m_commands.at(i).title) {
            actions.at(i)->setText(m_commands.at(i).title());
        }
    }
    setMenuColor(m_menuColor);
}

void PanelOptionsMenu::setMenuColor(const QColor &colour)
{
    m_menuColor = colour;
    const QPalette usual = m_button.palette();
    const float background = usual.color(QPalette::Window).lightnessF();
    const bool legible = std::abs(background - colour.lightnessF()) > 0.5F;
    const QColor text = legible ? colour : usual.color(QPalette::WindowText);
    QPalette palette = usual;
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text}) {
        palette.setColor(QPalette::Active, role, text);
        palette.setColor(QPalette::Inactive, role, text);
    }
    m_menu->setPalette(palette);
    const QFont font = PanelStyle::menuFont();
    const QList<QAction *> actions = m_menu->actions();
    for (QAction *action : actions) {
        action->setFont(font);
    }
}

void PanelOptionsMenu::beforeMenuOpen()
{
    setMenuColor(Qt::black);
}

void PanelOptionsMenu::swapTabPanel()
{
    setMenuColor(Qt::white);
}

void PanelOptionsMenu::open()
{
    const bool mirrored = m_button.layoutDirection() == Qt::RightToLeft;
    const int x = mirrored ? 0 : m_button.width() - m_menu->sizeHint().width();
    m_menu->popup(m_button.mapToGlobal(QPoint(x, m_button.height() + 2)));
}

} // namespace brevok
