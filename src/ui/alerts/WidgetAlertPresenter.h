// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/AlertPresenter.h"

#include <QPointer>

namespace brevok {

class AlertDialog;

/// Shows alerts as windows. The accessory of an alert is a `QWidget *` that its maker still owns: it is
/// put into the alert's window, and handed back, hidden and without a parent, when that window goes.
///
/// A sheet is a window of its own, modal for the window it is attached to only. When that window is destroyed
/// the sheet goes with it, and its completion is not called, because its caller goes too.
class WidgetAlertPresenter final : public AlertPresenter {
public:
    WidgetAlertPresenter();
    ~WidgetAlertPresenter() override;
    Q_DISABLE_COPY_MOVE(WidgetAlertPresenter)

    /// Waits in an event loop of its own, as an application-modal alert must. Answers alertStopped when the
    /// program ends meanwhile.
    int runModal(const AlertContent &alert) override;

    Ending beginModal(const AlertContent &alert, Completion completion) override;

    [[nodiscard]] SheetInterface sheetInterface() const override;
    void beginSheet(const AlertContent &alert, QObject *window, Completion completion) override;
    [[nodiscard]] bool windowEndsSheets(QObject *window) const override;
    /// Ends the newest sheet of the window; its completion gets alertStopped.
    void windowEndSheet(QObject *window) override;
    void applicationEndSheet(QObject *window) override;

private:
    struct Sheet {
        QPointer<AlertDialog> dialog;
        QPointer<QObject> window;
    };
    AlertDialog *makeDialog(const AlertContent &alert, QObject *window, Completion completion);

    QList<Sheet> m_sheets; ///< and alerts that nobody waits for, which have no window
};

} // namespace brevok
