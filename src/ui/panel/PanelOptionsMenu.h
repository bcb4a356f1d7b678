// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QMenu>

#include <functional>

namespace brevok {

class SymbolButton;

/// The options pop-up menu and its button. Main thread.
class PanelOptionsMenu final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PanelOptionsMenu)

public:
    /// One command; an empty title is a line between commands.
    struct Command {
        QString objectName;
        std::function<QString()> title; ///< asked anew when the language changes
        QKeySequence shortcut;
        std::function<void()> run;
    };

    /// @p button opens the menu.
    PanelOptionsMenu(SymbolButton &button, const QList<Command> &commands, QObject *parent);
    ~PanelOptionsMenu() override;

    [[nodiscard]] QMenu &popUpMenu() { return *m_menu; }
    /// White while the menu is closed, black while it is open.
    [[nodiscard]] QColor menuColor() const { return m_menuColor; }
    /// Restyles the titles: their font, and @p colour where it can be read on the menu, else the system's.
    void setMenuColor(const QColor &colour);
    void beforeMenuOpen();
    void swapTabPanel(); ///< back to the colour of a closed menu
    void updateTexts();

private:
    void open();

    SymbolButton &m_button;
    QMenu *m_menu; ///< owned by the button
    QList<Command> m_commands;
    QColor m_menuColor;
};

} // namespace brevok
