// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>
#include <QHash>
#include <QMainWindow>
#include <QUrl>

#include <memory>
#include <optional>

class QCheckBox;

namespace Ui {
class BrevokPreferences;
}

namespace brevok {

class AlertPresenter;
class BrevokSession;
class BrevokTargetApps;
class SettingsAccess;
class SettingsStore;
class TargetsPage;
class TimerRuns;
class UrlOpener;

/// The preferences window: pages for the account, the targets and the settings, chosen in its toolbar. Edits
/// what others own and follows what they tell, so that it shows changes made elsewhere at once. Main thread.
class BrevokPreferencesController final : public QMainWindow {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokPreferencesController)

public:
    /// The pages, by their places in the tab view.
    enum class Page { Account = 0, Settings = 1, Targets = 2 };

    /// All outlive the window.
    struct Collaborators {
        BrevokSession &session;
        BrevokTargetApps &targets;
        SettingsAccess &access;
        const SettingsStore &settings; ///< only observed
        AlertPresenter &presenter;
        UrlOpener &urlOpener;
        TimerRuns &timerRuns;
        QUrl service; ///< base address of the service and its web pages
    };

    explicit BrevokPreferencesController(Collaborators collaborators, QWidget *parent = nullptr);
    ~BrevokPreferencesController() override;

    /// The window of this process, for the outermost code; null while none was made.
    static BrevokPreferencesController *preferencesController();

    /// Brings the window to the front, at the page it shows.
    void showWindow();
    /// Brings the window to the front at the page of the targets.
    void showTargets();
    void switchTab(Page page);

    /// Signs in with the fields' texts, or out.
    void signInOrOut();
    void returnOnCredentials(bool inEmailField);
    void createAccount();

    /// Shows the account page as the session is now.
    void updateAccountPage();
    /// Shows the check boxes as the settings are now.
    void updateSettingsPage();
    /// Says when the scheduled updates, which two of the settings are for, run next; nothing where they never
    /// do.
    void showSchedule(const std::optional<QDateTime> &next);

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void setTexts();
    void setUpToolbar();
    void setUpAccount();
    void setUpSettings();
    void observe();
    void showSession(bool idle, bool signedIn);

    Collaborators m_with;
    std::unique_ptr<Ui::BrevokPreferences> m_outlets;
    QHash<QString, QCheckBox *> m_settingBoxes; ///< by the setting's key
    QString m_notKept; ///< why the choice made last had no effect, as with the login item
    TargetsPage *m_targetsPage = nullptr;
    bool m_focusButton = false; ///< when the session is idle again
};

} // namespace brevok
