// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "updates/UpdateState.h"

#include <QDialog>

#include <memory>

namespace Ui {
class BrevokSoftwareUpdate;
}

namespace brevok {

class BrevokSelfUpdater;
class MainBundle;
class UrlOpener;

/// The window of the application's own updates: follows the updater, shows what it offers or answers, and
/// tells it what the user chose. It comes up by itself when the updater wants it. Main thread.
class BrevokSoftwareUpdateController final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokSoftwareUpdateController)

public:
    /// References outlive the window.
    struct Collaborators {
        BrevokSelfUpdater &updater;
        const MainBundle &bundle;
        UrlOpener &urls; ///< for links in the notes
    };

    explicit BrevokSoftwareUpdateController(Collaborators with, QWidget *parent = nullptr);
    ~BrevokSoftwareUpdateController() override;

    /// Shows the updater's state. It takes the focus only where the user asked for the check.
    void showWindow();
    /// Closing the window is "not now", but what the system installs goes on.
    void reject() override;

private:
    void connectButtons();
    void follow();
    void layOut();

    Collaborators m_with;
    UpdateState::Phase m_shownPhase = UpdateState::Phase::Idle;
    std::unique_ptr<Ui::BrevokSoftwareUpdate> m_outlets;
};

} // namespace brevok
