// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileState.h"

#include <QDialog>

#include <memory>

class QFileDialog;

namespace Ui {
class TargetSheet;
}

namespace brevok {

class AlertPresenter;
class BrevokTargetApps;
struct ChosenFolder;

/// The sheet that asks for a target: its folder, and the application and version that it belongs to, which
/// are read from the application beside the folder unless they were chosen by hand. One for each target; it
/// goes when it is closed. Main thread.
class TargetSheet final : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TargetSheet)

public:
    /// The first of @p folders that answers is where the choice of a folder starts.
    TargetSheet(
        BrevokTargetApps &targets, AlertPresenter &presenter, QStringList folders, QWidget *parent = nullptr);
    ~TargetSheet() override;

    /// Opens the sheet, with the folder @p path when it is known already.
    void begin(const QString &path = {});

    /// Asks for the folder of `targetPath`.
    void clickOnPath();
    /// The same from the last item of `targetPath`.
    void chosePath();
    /// Tells the target when its folder passes the test, which runs in the background; else asks.
    void insertPath();
    /// Closes the sheet.
    void cancelPath();

Q_SIGNALS:
    void targetChosen(const QString &path, const QString &type, const QString &version);
    /// The chooser of folders showed @p folder when one was chosen in it.
    void browsed(const QString &folder);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void setTexts();
    void setTargetPath(const QString &path);
    void showPath();
    void folderRead(const ChosenFolder &chosen);
    void showVersion(const QString &version);
    void openChooser(const QString &folder);
    void folderChosen(const QFileDialog &chooser);
    void setChecking(bool checking);
    void tell(const QString &text);
    void fitTexts();
    void warnOfPath();
    void tellTarget();

    BrevokTargetApps &m_targets;
    AlertPresenter &m_presenter;
    QStringList m_folders;
    std::unique_ptr<Ui::TargetSheet> m_outlets;
    QString m_path;
    std::optional<FolderLook> m_look; ///< what the disk said of the folder last
    bool m_choosing = false; ///< until the chooser is open
    bool m_appByHand = false;
    bool m_versionByHand = false;
};

} // namespace brevok
