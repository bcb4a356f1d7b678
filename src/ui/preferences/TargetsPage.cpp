// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/preferences/TargetsPage.h"

#include "foundation/Paths.h"
#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"
#include "targets/BrevokTargetApps.h"
#include "targets/MarketingNames.h"
#include "targets/TargetJudgement.h"
#include "ui/preferences/ChosenFolder.h"
#include "ui/preferences/TargetOrder.h"
#include "ui/preferences/TargetRowDelegate.h"
#include "ui/preferences/TargetSheet.h"
#include "ui/preferences/TargetTableModel.h"
#include "ui/widgets/TextFitting.h"
#include "ui_TargetsPage.h"

#include <QAccessible>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QRubberBand>
#include <QShortcut>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// Of a folder elsewhere the address, which is no path that a target can have.
QStringList droppedFolders(const QMimeData &data)
{
    QStringList folders;
    const QList<QUrl> urls = data.urls();
    for (const QUrl &url : urls) {
        folders.append(url.isLocalFile() ? url.toLocalFile() : url.toDisplayString());
    }
    return folders;
}

// Where choosing a folder starts: where it ended last, beside the known hosts, where hosts are searched.
QStringList foldersOfHosts(const QString &last, const BrevokTargetApps &targets)
{
    QStringList folders{last};
    const TargetRecords records = targets.targets();
    constexpr qsizetype enough = 3; // each may be behind a disk that does not answer
    for (auto record = records.cbegin(); record != records.cend() && folders.size() <= enough; ++record) {
        const QString folder = deletingLastPathComponent(deletingLastPathComponent(record.key()));
        if (!folders.contains(folder)) {
            folders.append(folder);
        }
    }
    folders.append(targets.searchedFolders());
    folders.removeAll(QString());
    return folders;
}

// To those who do not see it.
void announce(QLabel &label)
{
    if (label.isVisible()) {
        QAccessibleEvent shown(&label, QAccessible::Alert);
        QAccessible::updateAccessibility(&shown);
    }
}

} // namespace

TargetsPage::TargetsPage(BrevokTargetApps &targets, AlertPresenter &presenter, QWidget *parent)
    : QWidget(parent)
    , m_targets(targets)
    , m_presenter(presenter)
    , m_outlets(std::make_unique<Ui::TargetsPage>())
    , m_model(new TargetTableModel(targets, this))
{
    setObjectName(u"targetsPage"_s);
    setAcceptDrops(true);
    Ui::TargetsPage &ui = *m_outlets;
    ui.setupUi(this);
    setTexts();
    setUpTable();
    m_dropFrame = new QRubberBand(QRubberBand::Rectangle, this);
    connect(ui.insertButton, &QPushButton::clicked, this, &TargetsPage::openTargetSheet);
    connect(ui.removeButton, &QPushButton::clicked, this, &TargetsPage::removePath);
    connect(ui.undoButton, &QPushButton::clicked, this, &TargetsPage::undoRemoval);
    auto *undo = new QShortcut(QKeySequence::Undo, this);
    undo->setContext(Qt::WidgetWithChildrenShortcut);
    connect(undo, &QShortcut::activated, this, &TargetsPage::undoRemoval);
    connect(&m_targets, &BrevokTargetApps::targetsChanged, this, &TargetsPage::targetsChanged);
    targetsChanged();
    forget();
}

TargetsPage::~TargetsPage() = default;

void TargetsPage::setTexts()
{
    Ui::TargetsPage &ui = *m_outlets;
    ui.targetsHint->setText(Texts::tr("Plug-Ins are installed into the enabled folders."));
    ui.noTargets->setText(
        Texts::tr("Neither InDesign nor InCopy was found. Add the Plug-Ins folder of the application."));
    ui.targetsView->setAccessibleName(Texts::tr("Targets"));
    ui.insertButton->setText(Texts::tr("&Add…"));
    ui.removeButton->setText(Texts::tr("&Remove"));
    ui.undoButton->setText(Texts::tr("&Undo"));
}

void TargetsPage::setUpTable()
{
    QTableView &table = *m_outlets->targetsView;
    table.setModel(m_model);
    table.setItemDelegate(new TargetRowDelegate(&table));
    table.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table.verticalHeader()->hide();
    table.horizontalHeader()->setResizeContentsPrecision(0); // what is seen
    table.horizontalHeader()->setSectionResizeMode(
        TargetTableModel::EnableColumn, QHeaderView::ResizeToContents);
    table.installEventFilter(this);
    table.viewport()->installEventFilter(this);
    connect(m_model, &TargetTableModel::checkboxClicked, this, &TargetsPage::checkboxClicked);
    connect(
        table.selectionModel(), &QItemSelectionModel::selectionChanged, this, &TargetsPage::selectionChanged);
}

void TargetsPage::targetsChanged()
{
    m_outlets->noTargets->setVisible(m_model->rowCount() == 0);
    const TargetRecords &records = m_targets.allRecords();
    const auto cameBack = [&records](const Removed &target) {
        return records.value(target.path).value(TargetKeys::removed) != QJsonValue(TargetKeys::yes);
    };
    if (m_removed.removeIf(cameBack) > 0) {
        showRemoved();
    }
    selectionChanged();
    fixColumn();
}

void TargetsPage::selectionChanged()
{
    m_outlets->removeButton->setEnabled(m_outlets->targetsView->selectionModel()->hasSelection());
}

void TargetsPage::fixColumn()
{
    QTableView &table = *m_outlets->targetsView;
    table.setColumnWidth(TargetTableModel::LabelColumn,
        table.viewport()->width() - table.columnWidth(TargetTableModel::EnableColumn));
}

bool TargetsPage::eventFilter(QObject *watched, QEvent *event)
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
    return QWidget::eventFilter(watched, event);
}

void TargetsPage::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    fixColumn();
}

void TargetsPage::forget()
{
    m_removed.clear();
    m_waiting.clear();
    m_refused.clear();
    showRemoved();
    tell({});
}

void TargetsPage::checkboxClicked(int row)
{
    const QString path = m_model->path(row);
    m_targets.setTarget(path, !m_targets.targetState(path));
}

void TargetsPage::removePath()
{
    const QModelIndexList selected = m_outlets->targetsView->selectionModel()->selectedRows();
    if (selected.isEmpty()) {
        return;
    }
    const bool byButton = m_outlets->removeButton->hasFocus();
    QList<Removed> removed; // the rows move while targets go
    for (const QModelIndex &row : selected) {
        const QString path = m_model->path(row.row());
        removed.append({path, m_targets.allRecords().value(path)});
    }
    m_removed.clear();
    m_model->changeMany([&] {
        for (const Removed &target : std::as_const(removed)) {
            m_targets.removeTarget(target.path);
        }
    });
    m_removed = std::move(removed);
    tell({});
    showRemoved();
    targetsChanged();
    if (byButton) { // which nothing is left to press for
        m_outlets->undoButton->setFocus();
    }
}

// A removal is undone by an insertion alone.
void TargetsPage::undoRemoval()
{
    const QList<Removed> removed = std::exchange(m_removed, {});
    QStringList paths;
    m_model->changeMany([&] {
        for (const auto &[path, record] : removed) {
            m_targets.insertTarget(path, record.value(TargetKeys::type).toString(),
                record.value(TargetKeys::version).toString());
            if (record.value(TargetKeys::enabled) != QJsonValue(TargetKeys::yes)) {
                m_targets.setTarget(path, false);
            }
            paths.append(path);
        }
    });
    if (!paths.isEmpty()) {
        targetsChanged();
        showTargets(paths);
        showRemoved();
    }
}

void TargetsPage::showRemoved()
{
    Ui::TargetsPage &ui = *m_outlets;
    if (m_removed.isEmpty() && ui.undoButton->hasFocus()) {
        ui.targetsView->setFocus();
    }
    if (m_removed.size() == 1) {
        const QString name = oneLine(targetLabel(m_removed.first().record), 100);
        setBreakableText(*ui.removedText, Texts::tr("Removed %1.").arg(name));
        setPlainToolTip(*ui.removedText, m_removed.first().path);
    } else {
        setBreakableText(*ui.removedText, Texts::tr("Removed %1 targets.").arg(m_removed.size()));
        setPlainToolTip(*ui.removedText, {});
    }
    ui.removedText->setVisible(!m_removed.isEmpty());
    ui.undoButton->setVisible(!m_removed.isEmpty());
    announce(*ui.removedText);
}

void TargetsPage::openTargetSheet()
{
    addFolders({QString()});
}

void TargetsPage::openSheet(const QString &path)
{
    tell({});
    auto *sheet = new TargetSheet(m_targets, m_presenter, foldersOfHosts(m_lastFolder, m_targets), this);
    connect(sheet, &TargetSheet::browsed, this, [this](const QString &folder) { m_lastFolder = folder; });
    connect(sheet, &TargetSheet::targetChosen, this, &TargetsPage::addTarget);
    connect(sheet, &QDialog::finished, this, [this](int result) {
        if (result == QDialog::Rejected) {
            m_waiting.clear();
        }
        addNextFolder();
    });
    sheet->begin(path);
}

void TargetsPage::dragEnterEvent(QDragEnterEvent *event)
{
    if (!event->mimeData()->hasUrls()) {
        return;
    }
    // Nothing is moved, whatever is proposed.
    event->setDropAction(event->possibleActions() & Qt::LinkAction ? Qt::LinkAction : Qt::CopyAction);
    event->accept();
    m_dropFrame->setGeometry(m_outlets->targetsView->geometry());
    m_dropFrame->show();
}

void TargetsPage::dragLeaveEvent(QDragLeaveEvent *event)
{
    QWidget::dragLeaveEvent(event);
    m_dropFrame->hide();
}

void TargetsPage::dropEvent(QDropEvent *event)
{
    m_dropFrame->hide();
    event->setDropAction(event->possibleActions() & Qt::LinkAction ? Qt::LinkAction : Qt::CopyAction);
    event->accept();
    addFolders(droppedFolders(*event->mimeData()));
}

void TargetsPage::addFolders(const QStringList &folders)
{
    m_waiting.append(folders);
    if (!std::exchange(m_adding, true)) {
        addNextFolder();
    }
}

void TargetsPage::addNextFolder()
{
    if (m_waiting.isEmpty()) {
        m_adding = false;
        const QStringList refused = std::exchange(m_refused, {});
        tell(refused.isEmpty() ? QString() : andMore(refused.first(), refused.size() - 1));
    } else if (const QString path = m_waiting.takeFirst(); path.isEmpty()) {
        openSheet(path);
    } else {
        tell(Texts::tr("Checking the folder…"));
        testChosenFolder(
            m_targets, path, this, [this, path](const ChosenFolder &chosen) { folderTested(path, chosen); });
    }
}

void TargetsPage::folderTested(const QString &path, const ChosenFolder &chosen)
{
    if (!window()->isVisible()) { // nobody is there any more to be asked or told
        m_adding = false;
        forget();
        return;
    }
    const std::optional<int> version =
        chosen.host ? targetVersionIndex(chosen.host->version) : std::optional<int>();
    // Any version will do to see whether the folder itself is refused.
    if (const std::optional<QString> reason = whyNoTarget(path, targetVersion(0), chosen.look)) {
        m_refused.append(*reason);
    } else if (!chosen.passes || !version) {
        openSheet(path);
        return;
    } else {
        addTarget(path, chosen.host->isInCopy ? u"InCopy"_s : u"InDesign"_s, targetVersion(*version));
    }
    addNextFolder();
}

// Of a folder that is in the list, a record that says the same stays: the search may know its host by more.
void TargetsPage::addTarget(const QString &path, const QString &type, const QString &version)
{
    const QString known = m_targets.recordPath(path).value_or(path); // however the path is written
    const Record present = m_targets.targets().value(known);
    const bool isInCopy = present.value(TargetKeys::type).toString().contains("InCopy"_L1);
    if (!present.isEmpty() && isInCopy == (type == "InCopy"_L1)
        && present.value(TargetKeys::version) == QJsonValue(version)) {
        if (m_targets.targetState(known)) {
            m_refused.append(Texts::tr("'%1' is already in the list.").arg(path));
        } else {
            m_targets.setTarget(known, true);
        }
    } else {
        m_targets.insertTarget(path, type, version);
    }
    showTargets({m_targets.recordPath(path).value_or(path)});
}

void TargetsPage::showTargets(const QStringList &paths)
{
    QTableView &table = *m_outlets->targetsView;
    QItemSelection rows;
    for (const QString &path : paths) {
        const QModelIndex row = m_model->index(m_model->row(path), TargetTableModel::LabelColumn);
        rows.select(row, row);
    }
    const QModelIndex last =
        m_model->index(m_model->row(paths.value(paths.size() - 1)), TargetTableModel::LabelColumn);
    table.selectionModel()->setCurrentIndex(last, QItemSelectionModel::NoUpdate);
    table.selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    table.scrollTo(last);
    table.setFocus();
}

void TargetsPage::tell(const QString &notice)
{
    setBreakableText(*m_outlets->targetsNotice, oneLine(notice));
    m_outlets->targetsNotice->setVisible(!notice.isEmpty());
    announce(*m_outlets->targetsNotice);
}

} // namespace brevok
