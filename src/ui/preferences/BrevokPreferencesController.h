// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileState.h"

#include <QHash>
#include <QMainWindow>
#include <QUrl>

#include <memory>

class QCheckBox;
class QFileDialog;

namespace Ui {
class BrevokPreferences;
}

namespace brevok {

class AlertPresenter;
class BrevokSession;
class BrevokTargetApps;
class SettingsAccess;
class SettingsStore;
class TargetTableModel;
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
    [[nodiscard]] Page page() const;

    /// Opens the sheet that asks for a target.
    void openTargetSheet();
    /// Asks for the folder of `targetPath`.
    void clickOnPath();
    /// The same from the last item of `targetPath`; the sheet is open again afterwards.
    void chosePath();
    /// Adds the target of the sheet when its folder passes the test, which runs in the background; else asks.
    void insertPath();
    /// Closes the sheet.
    void cancelPath();
    /// Removes the targets of the selected rows.
    void removePath();
    /// Enables the target of @p row, or disables it.
    void checkboxClicked(int row);
    /// Makes the label column as wide as its widest label.
    void fixColumn();

    /// Signs in with the fields' texts, or out.
    void signInOrOut();
    void returnOnCredentials(bool inEmailField);
    void createAccount();

    /// Shows the account page as the session is now.
    void updateAccountPage();
    /// Shows the check boxes as the settings are now.
    void updateSettingsPage();

protected:
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void setTexts();
    void setUpToolbar();
    void setUpAccount();
    void setUpSettings();
    void setUpTargets();
    void setUpSheet();
    void observe();
    void targetsChanged();
    void selectionChanged();

    [[nodiscard]] QString targetPath() const;
    void setTargetPath(const QString &path);
    void openChooser(bool reopenSheet);
    void folderChosen(const QFileDialog &chooser, bool reopenSheet);
    void setChecking(bool checking);
    void folderChecked(bool passes);
    void warnOfPath();
    void insertChosenTarget();

    Collaborators m_with;
    std::unique_ptr<Ui::BrevokPreferences> m_outlets;
    QHash<QString, QCheckBox *> m_settingBoxes; ///< by the setting's key
    QString m_notKept; ///< why the choice made last had no effect, as with the login item
    TargetTableModel *m_model = nullptr;
    std::optional<FolderLook> m_look; ///< what the disk said of the folder that was tested last
    int m_check = 0; ///< number of the latest test of a folder; earlier answers do not count
};

} // namespace brevok
