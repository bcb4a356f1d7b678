// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"

#include <QStringList>
#include <QWidget>

#include <memory>

namespace Ui {
class TargetsPage;
}

class QRubberBand;

namespace brevok {

class AlertPresenter;
class BrevokTargetApps;
class TargetTableModel;
struct ChosenFolder;

/// The page of the targets: the table of those that are known, what adds and removes them, and the way back
/// for what was removed last. Folders can be dropped onto it. Main thread.
class TargetsPage final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TargetsPage)

public:
    /// Both outlive the page.
    TargetsPage(BrevokTargetApps &targets, AlertPresenter &presenter, QWidget *parent = nullptr);
    ~TargetsPage() override;

    /// Opens the sheet that asks for a target.
    void openTargetSheet();
    /// Adds the targets of @p folders one after another; asks where one does not look like a target's.
    void addFolders(const QStringList &folders);
    /// Removes the targets of the selected rows; undoRemoval() brings them back.
    void removePath();
    void undoRemoval();
    /// What was removed cannot be brought back any more, and what was told is read.
    void forget();
    /// Enables the target of @p row, or disables it.
    void checkboxClicked(int row);
    /// Makes the label column as wide as the table has room for; in a label that is wider the path gives way.
    void fixColumn();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    struct Removed {
        QString path;
        Record record;
    };

    void setTexts();
    void setUpTable();
    void targetsChanged();
    void selectionChanged();
    void showRemoved();
    void addNextFolder();
    void folderTested(const QString &path, const ChosenFolder &chosen);
    void openSheet(const QString &path);
    void addTarget(const QString &path, const QString &type, const QString &version);
    void showTargets(const QStringList &paths);
    void tell(const QString &notice);

    BrevokTargetApps &m_targets;
    AlertPresenter &m_presenter;
    std::unique_ptr<Ui::TargetsPage> m_outlets;
    TargetTableModel *m_model = nullptr;
    QString m_lastFolder; ///< that a chooser showed
    QList<Removed> m_removed; ///< last, and not come back since
    QStringList m_waiting; ///< folders that are to be added
    QStringList m_refused; ///< why some of them were not
    bool m_adding = false;
    QRubberBand *m_dropFrame = nullptr;
};

} // namespace brevok
