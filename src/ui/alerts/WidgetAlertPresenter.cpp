// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/alerts/WidgetAlertPresenter.h"

#include "ui/alerts/AlertDialog.h"

#include <QApplication>
#include <QWindow>

namespace brevok {

namespace {

// The panel stays above other windows, and so must what is shown while it is open. The alert is not its
// child: it outlives it.
void stayAbove(QWidget &alert, const QWidget *below)
{
    if (below == nullptr || !below->isVisible() || below->window()->windowHandle() == nullptr) {
        return;
    }
    alert.winId();
    alert.windowHandle()->setTransientParent(below->window()->windowHandle());
}

} // namespace

WidgetAlertPresenter::WidgetAlertPresenter() = default;

WidgetAlertPresenter::~WidgetAlertPresenter()
{
    for (const Sheet &sheet : std::as_const(m_sheets)) {
        delete sheet.dialog;
    }
}

int WidgetAlertPresenter::runModal(const AlertContent &alert)
{
    AlertDialog dialog(alert);
    dialog.setWindowModality(Qt::ApplicationModal);
    stayAbove(dialog, QApplication::activeWindow());
    dialog.show();
    dialog.raise();
    dialog.activateWindow();
    dialog.exec();
    return dialog.response();
}

AlertDialog *WidgetAlertPresenter::makeDialog(
    const AlertContent &alert, QObject *window, Completion completion)
{
    auto *dialog = new AlertDialog(alert, qobject_cast<QWidget *>(window));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_sheets.removeIf([](const Sheet &sheet) { return sheet.dialog.isNull(); });
    m_sheets.append({dialog, window});
    QObject::connect(dialog, &QDialog::finished, dialog, [dialog, answered = std::move(completion)] {
        if (answered) {
            answered(dialog->response());
        }
    });
    return dialog;
}

AlertPresenter::Ending WidgetAlertPresenter::beginModal(const AlertContent &alert, Completion completion)
{
    const QPointer<AlertDialog> dialog = makeDialog(alert, nullptr, std::move(completion));
    dialog->setWindowModality(Qt::ApplicationModal);
    stayAbove(*dialog, QApplication::activeWindow());
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    return [dialog](int response) {
        if (dialog) {
            dialog->end(response);
        }
    };
}

AlertPresenter::SheetInterface WidgetAlertPresenter::sheetInterface() const
{
    return SheetInterface::WithHandler;
}

void WidgetAlertPresenter::beginSheet(const AlertContent &alert, QObject *window, Completion completion)
{
    AlertDialog *dialog = makeDialog(alert, window, std::move(completion));
    dialog->setWindowModality(dialog->parent() != nullptr ? Qt::WindowModal : Qt::ApplicationModal);
    dialog->open();
    dialog->raise();
    dialog->activateWindow();
}

bool WidgetAlertPresenter::windowEndsSheets(QObject *window) const
{
    return qobject_cast<QWidget *>(window) != nullptr;
}

void WidgetAlertPresenter::windowEndSheet(QObject *window)
{
    for (qsizetype i = m_sheets.size() - 1; i >= 0; --i) {
        const Sheet sheet = m_sheets.at(i);
        if (sheet.window == window && sheet.dialog && sheet.dialog->isVisible()) {
            sheet.dialog->stop();
            return;
        }
    }
}

void WidgetAlertPresenter::applicationEndSheet(QObject *window)
{
    windowEndSheet(window);
}

} // namespace brevok
