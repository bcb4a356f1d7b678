// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/panel/PackageRows.h"

#include <QFont>
#include <QPixmap>

#include <memory>

namespace Ui {
class BrevokPackageCell;
}

namespace brevok {

class PackageActivity;
class PackageCellView;
class UrlOpener;

/// Runs one row of the packages tab. Outlets: icon, name, note, actionButton, removeButton, infoButton,
/// progressIndicator, progressBar. A row may come to show another package. The row itself takes the
/// keyboard's focus where the action cannot. Main thread.
class BrevokPackageCellController final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokPackageCellController)

public:
    BrevokPackageCellController(PackageActivity &activity, UrlOpener &urls, QWidget *parentView);
    ~BrevokPackageCellController() override;

    [[nodiscard]] PackageCellView *view() const { return m_view; }
    [[nodiscard]] const PackageRow &row() const { return m_row; }
    /// The package record of the row.
    [[nodiscard]] const Record &package() const { return m_row.package; }

    /// Shows @p row, whose status is the one to be shown, with @p icon (null for none).
    void setRow(const PackageRow &row, const QPixmap &icon);
    void setProgress(const std::optional<DownloadProgress> &progress);
    /// Follows the fonts; the action column gets the width that its widest title needs.
    void updateFonts();

    /// Gives the focus to the action, or to the row itself while there is none to press.
    void focus();
    /// Moves the focus within the row: @p steps to the right, or to the left where that is below 0.
    void focusSideways(int steps);
    /// What can have the focus, in the order of the Tab key and of the arrow keys.
    [[nodiscard]] QList<QWidget *> controls() const;

    void action();
    void remove();
    void info();

private:
    void updateButtons();
    void updateNames();
    void removeClicked();

    PackageActivity &m_activity;
    UrlOpener &m_urls;
    PackageCellView *m_view; ///< owned by its parent view, or by this after that is gone
    std::unique_ptr<Ui::BrevokPackageCell> m_ui;
    PackageRow m_row;
    QFont m_actionFont;
    std::optional<DownloadProgress> m_progress;
};

} // namespace brevok
