// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/alerts/WidgetAlertPresenter.h"

#include "ui/alerts/AlertDialog.h"
#include "ui/widgets/FocusReturn.h"

#include <QApplication>
#include <QWindow>

namespace brevok {

namespace {

constexpr qint64 focusReturns = 1000; // milliseconds; it never does where the user goes elsewhere meanwhile

bool belongsTo(const QWidget *widget, const QWidget *window)
{
    while (widget != nullptr && widget != window) {
        widget = widget->parentWidget();
    }
    return widget != nullptr;
}

} // namespace

WidgetAlertPresenter::WidgetAlertPresenter()
{
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &m_context, [this](QWindow *now) {
        if (m_returning && m_returning->windowHandle() == now) {
            m_returning.clear();
        }
    });
}

WidgetAlertPresenter::~WidgetAlertPresenter()
{
    for (const Sheet &sheet : std::as_const(m_sheets)) {
        delete sheet.dialog;
    }
}

QWidget *WidgetAlertPresenter::windowInUse() const
{
    if (m_returning && m_returning->isVisible() && !m_sinceReturn.hasExpired(focusReturns)) {
        return m_returning;
    }
    QWidget *window = QApplication::activeWindow();
    return window != nullptr && window->isVisible() ? window : nullptr;
}

void WidgetAlertPresenter::giveFocusBack(AlertDialog &dialog, QWidget *origin)
{
    if (returnFocus(dialog, origin)) {
        m_returning = origin;
        m_sinceReturn.start();
    }
}

void WidgetAlertPresenter::show(AlertDialog &dialog, QWidget *origin)
{
    QObject::connect(&dialog, &QDialog::finished, &m_context,
        [this, &dialog, window = QPointer(origin)] { giveFocusBack(dialog, window); });
    // The panel stays above other windows, and so must what is shown while it is open. The alert is not its
    // child: it outlives it.
    stayAbove(dialog, origin);
    dialog.show();
    dialog.raise();
    dialog.activateWindow();
}

int WidgetAlertPresenter::runModal(const AlertContent &alert)
{
    AlertDialog dialog(alert);
    dialog.setWindowModality(Qt::ApplicationModal);
    show(dialog, windowInUse());
    dialog.exec();
    return dialog.response();
}

AlertDialog *WidgetAlertPresenter::makeDialog(const AlertContent &alert, QWidget *parent, QObject *window)
{
    auto *dialog = new AlertDialog(alert, parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_sheets.removeIf([](const Sheet &sheet) { return sheet.dialog.isNull(); });
    m_sheets.append({dialog, window});
    return dialog;
}

// After the focus went back, so that the answer may move it.
void WidgetAlertPresenter::tellAnswer(AlertDialog &dialog, Completion completion)
{
    QObject::connect(&dialog, &QDialog::finished, &dialog, [&dialog, answered = std::move(completion)] {
        if (answered) {
            answered(dialog.response());
        }
    });
}

AlertPresenter::Ending WidgetAlertPresenter::beginModal(const AlertContent &alert, Completion completion)
{
    const QPointer<AlertDialog> dialog = makeDialog(alert, nullptr, nullptr);
    dialog->setWindowModality(Qt::ApplicationModal);
    show(*dialog, windowInUse());
    tellAnswer(*dialog, std::move(completion));
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
    auto *below = qobject_cast<QWidget *>(window);
    if (QWidget *inUse = windowInUse(); below != nullptr && belongsTo(inUse, below)) {
        below = inUse; // the window may have another sheet
    }
    AlertDialog *dialog = makeDialog(alert, below, window);
    dialog->setWindowModality(below != nullptr ? Qt::WindowModal : Qt::ApplicationModal);
    show(*dialog, below);
    tellAnswer(*dialog, std::move(completion));
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
