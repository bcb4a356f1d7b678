// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// The page of the targets and its sheet.

#include "ui/preferences/BrevokPreferencesController.h"

#include "alerts/BrevokAlert.h"
#include "foundation/BoundedWork.h"
#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"
#include "targets/BrevokTargetApps.h"
#include "targets/TargetJudgement.h"
#include "targets/TargetLook.h"
#include "ui/preferences/TargetOrder.h"
#include "ui/preferences/TargetTableModel.h"
#include "ui/widgets/TextFitting.h"
#include "ui_BrevokPreferences.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QKeyEvent>
#include <QStyledItemDelegate>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// What a default button is worth by itself; as the first of an alert it counts alertFirstButton.
constexpr int defaultButton = 1;

/// The focus is a row's: it is seen around the text, not around nothing beside the check box.
class RowDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const auto *const table = qobject_cast<const QTableView *>(option->widget);
        option->state.setFlag(QStyle::State_HasFocus,
            table != nullptr && table->hasFocus() && index.column() == TargetTableModel::LabelColumn
                && index.row() == table->currentIndex().row());
    }
};

constexpr int sheetPathItem = 0; // of the pop-up; the item behind it opens the chooser

} // namespace

void BrevokPreferencesController::setUpTargets()
{
    Ui::BrevokPreferences &ui = *m_outlets;
    ui.targetsView->setModel(m_model);
    ui.targetsView->setItemDelegate(new RowDelegate(ui.targetsView));
    ui.targetsView->verticalHeader()->hide();
    ui.targetsView->horizontalHeader()->setSectionResizeMode(
        TargetTableModel::EnableColumn, QHeaderView::ResizeToContents);
    ui.targetsView->installEventFilter(this);
    ui.targetsView->viewport()->installEventFilter(this);
    connect(m_model, &TargetTableModel::checkboxClicked, this, &BrevokPreferencesController::checkboxClicked);
    connect(ui.targetsView->selectionModel(), &QItemSelectionModel::selectionChanged, this,
        &BrevokPreferencesController::selectionChanged);
    connect(ui.insertButton, &QPushButton::clicked, this, &BrevokPreferencesController::openTargetSheet);
    connect(ui.removeButton, &QPushButton::clicked, this, &BrevokPreferencesController::removePath);
    selectionChanged();
}

void BrevokPreferencesController::setUpSheet()
{
    Ui::BrevokPreferences &ui = *m_outlets;
    ui.targetPath->addItems({QString(), Texts::tr("Other…")});
    ui.targetApp->addItems({u"InDesign"_s, u"InCopy"_s});
    for (int index = 0; index < targetVersionCount; ++index) {
        ui.targetVer->addItem(targetVersionName(index));
    }
    connect(ui.targetPath, &QComboBox::activated, this, [this](int index) {
        if (index != sheetPathItem) {
            chosePath();
        }
    });
    connect(ui.choosePath, &QPushButton::clicked, this, &BrevokPreferencesController::clickOnPath);
    connect(ui.addTarget, &QPushButton::clicked, this, &BrevokPreferencesController::insertPath);
    connect(ui.cancelTarget, &QPushButton::clicked, this, &BrevokPreferencesController::cancelPath);
    connect(ui.targetDataSheet, &QDialog::rejected, this, &BrevokPreferencesController::cancelPath);
}

void BrevokPreferencesController::targetsChanged()
{
    m_outlets->noTargets->setVisible(m_model->rowCount() == 0);
    selectionChanged();
    fixColumn();
}

void BrevokPreferencesController::selectionChanged()
{
    m_outlets->removeButton->setEnabled(m_outlets->targetsView->selectionModel()->hasSelection());
}

void BrevokPreferencesController::fixColumn()
{
    QTableView &table = *m_outlets->targetsView;
    const int widest =
        static_cast<const QAbstractItemView &>(table).sizeHintForColumn(TargetTableModel::LabelColumn);
    const int left = table.viewport()->width() - table.columnWidth(TargetTableModel::EnableColumn);
    table.setColumnWidth(TargetTableModel::LabelColumn, std::max(widest, left));
}

bool BrevokPreferencesController::eventFilter(QObject *watched, QEvent *event)
{
    QTableView *table = m_outlets->targetsView;
    if ((watched == table && event->type() == QEvent::FontChange)
        || (watched == table->viewport() && event->type() == QEvent::Resize)) {
        fixColumn();
    } else if (watched == table && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        const QModelIndex current = table->currentIndex();
        if (key == Qt::Key_Space && current.isValid()) {
            checkboxClicked(current.row());
            return true;
        }
        if (key == Qt::Key_Delete || key == Qt::Key_Backspace) {
            removePath();
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void BrevokPreferencesController::checkboxClicked(int row)
{
    const QString path = m_model->path(row);
    m_with.targets.setTarget(path, !m_with.targets.targetState(path));
}

void BrevokPreferencesController::removePath()
{
    QStringList paths; // the rows move while targets go
    const QModelIndexList selected = m_outlets->targetsView->selectionModel()->selectedRows();
    for (const QModelIndex &row : selected) {
        paths.append(m_model->path(row.row()));
    }
    for (const QString &path : std::as_const(paths)) {
        m_with.targets.removeTarget(path);
    }
}

void BrevokPreferencesController::openTargetSheet()
{
    setTargetPath({});
    m_outlets->targetApp->setCurrentIndex(0);
    m_outlets->targetVer->setCurrentIndex(targetVersionCount - 1);
    setChecking(false);
    m_outlets->targetDataSheet->open();
    m_outlets->choosePath->setFocus();
}

QString BrevokPreferencesController::targetPath() const
{
    return m_outlets->targetPath->itemData(sheetPathItem).toString();
}

void BrevokPreferencesController::setTargetPath(const QString &path)
{
    QComboBox &popUp = *m_outlets->targetPath;
    popUp.setItemData(sheetPathItem, path);
    popUp.setItemText(sheetPathItem, path.isEmpty() ? Texts::tr("None") : oneLine(path));
    popUp.setCurrentIndex(sheetPathItem);
    setPlainToolTip(popUp, path);
    m_outlets->addTarget->setEnabled(!path.isEmpty());
    setBreakableText(*m_outlets->sheetStatus, {});
}

void BrevokPreferencesController::clickOnPath()
{
    openChooser(false);
}

void BrevokPreferencesController::chosePath()
{
    m_outlets->targetPath->setCurrentIndex(m_outlets->targetPath->count() - 1);
    openChooser(true);
}

void BrevokPreferencesController::openChooser(bool reopenSheet)
{
    QWidget *sheet = m_outlets->targetDataSheet;
    auto *chooser = new QFileDialog(sheet->isVisible() ? sheet : this, Texts::tr("Chose Plug-Ins directory"));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::Directory);
    chooser->setOption(QFileDialog::ShowDirsOnly);
    if (!targetPath().isEmpty()) {
        chooser->setDirectory(targetPath());
    }
    // The desktop's own chooser has no room for the message, which the sheet shows as well.
    if (auto *grid = qobject_cast<QGridLayout *>(chooser->layout())) {
        auto *message = new QLabel(
            Texts::tr("Chose Plug-Ins directory inside Adobe InCopy/InDesign application folder."), chooser);
        message->setTextFormat(Qt::PlainText);
        message->setWordWrap(true);
        grid->addWidget(message, grid->rowCount(), 0, 1, grid->columnCount());
    }
    connect(chooser, &QDialog::accepted, this,
        [this, chooser, reopenSheet] { folderChosen(*chooser, reopenSheet); });
    connect(
        chooser, &QDialog::rejected, this, [this] { m_outlets->targetPath->setCurrentIndex(sheetPathItem); });
    chooser->open();
}

void BrevokPreferencesController::folderChosen(const QFileDialog &chooser, bool reopenSheet)
{
    const QStringList chosen = chooser.selectedFiles();
    if (chosen.size() == 1) {
        setTargetPath(chosen.first());
    }
    if (reopenSheet) {
        m_outlets->targetDataSheet->open();
    }
}

void BrevokPreferencesController::setChecking(bool checking)
{
    ++m_check;
    for (QWidget *widget : QList<QWidget *>{
             m_outlets->targetPath, m_outlets->choosePath, m_outlets->targetApp, m_outlets->targetVer}) {
        widget->setEnabled(!checking);
    }
    m_outlets->addTarget->setEnabled(!checking && !targetPath().isEmpty());
    setBreakableText(*m_outlets->sheetStatus, checking ? Texts::tr("Checking the folder…") : QString());
}

void BrevokPreferencesController::insertPath()
{
    const QString path = targetPath();
    setChecking(true);
    m_with.targets.lookAt(path, this, [this, path, check = m_check](const std::optional<FolderLook> &look) {
        if (m_check != check) {
            return;
        }
        m_look = look;
        if (!look || !isPlugInsPath(path)) {
            folderChecked(false);
            return;
        }
        inBackground([self = QPointer(this), path, check] {
            const auto search = [path](Pulse &pulse) {
                return hasInDesignBeside(path, pulse);
            };
            const bool passes = bounded<bool>(placeOf(path), search).value_or(false);
            onMain(QCoreApplication::instance(), [self, passes, check] {
                if (self && self->m_check == check) {
                    self->folderChecked(passes);
                }
            });
        });
    });
}

void BrevokPreferencesController::folderChecked(bool passes)
{
    setChecking(false);
    if (passes) {
        insertChosenTarget();
    } else {
        warnOfPath();
    }
}

void BrevokPreferencesController::insertChosenTarget()
{
    const QString type = m_outlets->targetApp->currentIndex() > 0 ? u"InCopy"_s : u"InDesign"_s;
    const QString version = targetVersion(m_outlets->targetVer->currentIndex());
    if (const std::optional<QString> reason = whyNoTarget(targetPath(), version, m_look)) {
        setBreakableText(*m_outlets->sheetStatus, oneLine(*reason));
        return;
    }
    m_with.targets.insertTarget(targetPath(), type, version);
    cancelPath();
}

void BrevokPreferencesController::warnOfPath()
{
    const std::shared_ptr<BrevokAlert> alert = BrevokAlert::create(m_with.presenter);
    alert->content.style = AlertStyle::Critical;
    alert->content.messageText = Texts::tr("Invalid Plug-Ins path selected!");
    alert->content.informativeText =
        Texts::tr("The path you specified doesn't look like a valid Adobe InDesign Plug-Ins folder. Do you "
                  "want to use it anyway?");
    alert->content.buttons = {{Texts::tr("OK")}, {Texts::tr("Cancel")}};
    // The alert lives as long as its answer is awaited.
    alert->openSheetModalForWindow(this, [this, alert](int response) {
        if (response == alertFirstButton || response == defaultButton) {
            insertChosenTarget();
        }
    });
}

void BrevokPreferencesController::cancelPath()
{
    setChecking(false);
    m_outlets->targetDataSheet->hide();
}

} // namespace brevok
