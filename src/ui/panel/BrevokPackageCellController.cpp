// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/BrevokPackageCellController.h"

#include "foundation/Texts.h"
#include "platform/UrlOpener.h"
#include "ui/panel/PackageActivity.h"
#include "ui/panel/PanelLayout.h"
#include "ui/widgets/PanelStyle.h"
#include "ui/widgets/TextFitting.h"
#include "ui_BrevokPackageCell.h"

#include <QApplication>

#include <algorithm>

namespace brevok {

namespace {

// Longer titles, as with large letters, get smaller ones, so that there is room for names.
constexpr int mostForTitles = 160;

int widestTitle(const QFont &font)
{
    int widest = 0;
    const QStringList titles = actionTitles();
    for (const QString &title : titles) {
        const bool small = title == rowButtons(PackageStatus::UpToDate, {}).actionTitle;
        widest = std::max(widest, PanelButton::widthFor(title, small ? PanelStyle::secondaryFont() : font));
    }
    return widest;
}

// Two, unless the system's font is too large for that.
int linesOfNote(const QWidget &name, const QWidget &note)
{
    constexpr int gaps = 3;
    const int room = PanelGeometry::rowHeight - name.fontMetrics().height() - gaps;
    return std::clamp(room / note.fontMetrics().height(), 1, 2);
}

int linesOfName(const QWidget &name)
{
    return 2 * name.fontMetrics().height() < PanelGeometry::rowHeight ? 2 : 1;
}

bool takesFocus(const QWidget *widget)
{
    return widget->isEnabled() && !widget->isHidden() && widget->focusPolicy() != Qt::NoFocus;
}

} // namespace

BrevokPackageCellController::BrevokPackageCellController(
    PackageActivity &activity, UrlOpener &urls, QWidget *parentView)
    : QObject(parentView)
    , m_activity(activity)
    , m_urls(urls)
    , m_view(new PackageCellView(parentView))
    , m_ui(std::make_unique<Ui::BrevokPackageCell>())
{
    m_ui->setupUi(m_view);
    connect(m_ui->actionButton, &QPushButton::clicked, this, &BrevokPackageCellController::action);
    connect(m_ui->removeButton, &QPushButton::clicked, this, &BrevokPackageCellController::removeClicked);
    connect(m_ui->infoButton, &QPushButton::clicked, this, &BrevokPackageCellController::info);
    updateFonts();
}

BrevokPackageCellController::~BrevokPackageCellController() = default;

void BrevokPackageCellController::updateFonts()
{
    const QFont secondary = PanelStyle::secondaryFont();
    m_ui->name->setFonts(PanelStyle::rowFont(), secondary);
    m_ui->note->setFonts(secondary, secondary);
    m_ui->note->setMostLines(linesOfNote(*m_ui->name, *m_ui->note));
    m_actionFont = PanelStyle::rowFont();
    int widest = widestTitle(m_actionFont);
    while (widest > mostForTitles && m_actionFont.pixelSize() > secondary.pixelSize()) {
        m_actionFont.setPixelSize(m_actionFont.pixelSize() - 1);
        widest = widestTitle(m_actionFont);
    }
    m_ui->actionButton->setFixedWidth(widest);
    updateButtons();
}

void BrevokPackageCellController::setRow(const PackageRow &row, const QPixmap &icon)
{
    m_ui->icon->setIcon(icon, row.name());
    if (row == m_row) {
        return;
    }
    m_row = row;
    m_ui->name->setText(row.name(), row.version());
    m_view->setPriority(row.isPriority());
    updateNames();
    updateButtons();
}

void BrevokPackageCellController::updateNames()
{
    const QString name = m_row.name();
    m_ui->removeButton->setAccessibleName(Texts::tr("Remove %1").arg(name));
    setPlainToolTip(*m_ui->removeButton, Texts::tr("Remove"));
    m_ui->infoButton->setAccessibleName(Texts::tr("About %1").arg(name));
    setPlainToolTip(*m_ui->infoButton, Texts::tr("More about this Plug-In"));
    m_ui->progressIndicator->setAccessibleName(Texts::tr("%1 is in progress").arg(name));
    m_ui->progressBar->setAccessibleName(Texts::tr("Download of %1").arg(name));
}

void BrevokPackageCellController::updateButtons()
{
    const RowButtons buttons = rowButtons(m_row.status, m_row.prefix());
    const bool pressable = buttons.actionVisible && buttons.actionEnabled && m_row.installable;
    PanelButton *action = m_ui->actionButton;
    const QWidget *focused = QApplication::focusWidget();
    // A control goes while its work is done; the keyboard stays at its row, and at its action when there is
    // one again.
    const bool goes = focused != nullptr
        && ((focused == action && !pressable) || (focused == m_ui->removeButton && !buttons.removeVisible)
            || (focused == m_ui->infoButton && m_row.info().isEmpty()));
    const bool hadFocus = goes || m_view->hasFocus();
    if (goes) {
        m_view->setFocus(Qt::OtherFocusReason);
    }
    action->setFont(buttons.actionSmall ? PanelStyle::secondaryFont() : m_actionFont);
    action->setText(buttons.actionTitle);
    action->setAccessibleName(
        Texts::tr("%1 %2", "title of a button, name of a package").arg(buttons.actionTitle, m_row.name()));
    action->setPlain(!buttons.actionEnabled);
    action->setProminent(waitsForUpdate(m_row.status));
    action->setEnabled(pressable);
    action->setVisible(buttons.actionVisible);
    m_view->setFocusPolicy(pressable ? Qt::NoFocus : Qt::TabFocus);
    m_ui->infoButton->setEnabled(!m_row.info().isEmpty());
    m_ui->removeButton->setVisible(buttons.removeVisible);
    m_ui->progressIndicator->setVisible(buttons.spinning);
    if (buttons.spinning) {
        m_ui->progressIndicator->startAnimation();
    } else {
        m_ui->progressIndicator->stopAnimation();
    }
    setProgress(buttons.spinning ? m_progress : std::nullopt);
    m_view->setAccessibleName(m_row.description());
    if (hadFocus) {
        focus();
    }
}

void BrevokPackageCellController::setProgress(const std::optional<DownloadProgress> &progress)
{
    const bool working = m_row.status == PackageStatus::InProgress;
    m_progress = working ? progress : std::nullopt;
    const bool failed = !working && !m_row.failure.isEmpty();
    const QString note = m_progress ? progressText(*m_progress)
        : failed                    ? m_row.failure
                                    : rowNote(m_row.status);
    m_ui->note->setFailing(failed);
    m_ui->note->setExplanation(failed ? m_row.failureDetails : QString());
    m_ui->note->setText(note);
    m_ui->note->setVisible(!note.isEmpty());
    m_ui->name->setMostLines(note.isEmpty() ? linesOfName(*m_ui->name) : 1);
    const bool determinate = m_progress && m_progress->hasLength() && !m_progress->ended();
    m_ui->progressBar->setVisible(determinate);
    if (determinate) {
        m_ui->progressBar->setPermille(m_progress->permille());
    }
}

QList<QWidget *> BrevokPackageCellController::controls() const
{
    return {m_view, m_ui->actionButton, m_ui->infoButton, m_ui->removeButton};
}

void BrevokPackageCellController::focus()
{
    QWidget *action = m_ui->actionButton;
    (takesFocus(action) ? action : m_view)->setFocus(Qt::OtherFocusReason);
}

void BrevokPackageCellController::focusSideways(int steps)
{
    QList<QWidget *> usable = controls();
    usable.removeIf([](const QWidget *control) { return !takesFocus(control); });
    const qsizetype at = usable.indexOf(QApplication::focusWidget());
    const int forward = m_view->isLeftToRight() ? steps : -steps;
    if (QWidget *next = usable.value(at + forward); at >= 0 && next != nullptr) {
        next->setFocus(Qt::OtherFocusReason);
    }
}

void BrevokPackageCellController::action()
{
    m_activity.install(m_row);
}

void BrevokPackageCellController::remove()
{
    m_activity.remove(m_row);
}

// The keyboard comes to the button on the way to somewhere else; the mouse means it.
void BrevokPackageCellController::removeClicked()
{
    if (m_ui->removeButton->isClickedByMouse()) {
        remove();
    } else {
        m_activity.askToRemove(m_row);
    }
}

void BrevokPackageCellController::info()
{
    if (const QString address = m_row.info(); !address.isEmpty()) {
        m_urls.open(QUrl(address));
    }
}

} // namespace brevok
