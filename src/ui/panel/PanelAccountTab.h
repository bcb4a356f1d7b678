// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/panel/PanelState.h"

#include <QObject>

class QLineEdit;
class QWidget;

namespace Ui {
class BrevokPanel;
}

namespace brevok {

class BrevokSession;

/// Runs the account tab: sign-in fields and buttons, in step with the session. Main thread.
class PanelAccountTab final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PanelAccountTab)

public:
    PanelAccountTab(Ui::BrevokPanel &ui, BrevokSession &session, QObject *parent);
    ~PanelAccountTab() override;

    /// Follows the session's status.
    void updateAccountTab(bool panelOpen);
    void showAccountTab();
    void showPackagesTab();
    /// Chooses the tab to begin with, without an animation.
    void chooseInitialTab();
    [[nodiscard]] PanelTab selectedTab() const;

    /// Signs in with the fields' texts, unless the session is busy.
    void signIn();
    /// Return was pressed in a field.
    void returnOnCredentials(const QLineEdit *sender);
    /// Puts the focus where the user goes on.
    void focusFirst();
    void updateTexts();

Q_SIGNALS:
    void createAccountWanted();

private:
    /// Those that are not there while a request runs.
    [[nodiscard]] QList<QWidget *> credentials() const;

    Ui::BrevokPanel &m_ui;
    BrevokSession &m_session;
};

} // namespace brevok
