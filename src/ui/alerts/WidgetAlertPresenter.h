// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/AlertPresenter.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>

namespace brevok {

class AlertDialog;

/// Shows alerts as windows. The accessory of an alert is a `QWidget *` that its maker still owns: it is
/// put into the alert's window, and handed back, hidden and without a parent, when that window goes.
///
/// An alert lies over the window that is in use, which has the keyboard again when it ends. A sheet is a
/// window of its own, modal for the window it is attached to only, and lies over that, or over what is open
/// above that. When the window is destroyed the sheet goes with it, and its completion is not called: its
/// caller goes too.
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
    [[nodiscard]] QWidget *windowInUse() const;
    void giveFocusBack(AlertDialog &dialog, QWidget *origin);
    AlertDialog *makeDialog(const AlertContent &alert, QWidget *parent, QObject *window);
    void show(AlertDialog &dialog, QWidget *origin);
    static void tellAnswer(AlertDialog &dialog, Completion completion);

    QList<Sheet> m_sheets; ///< and alerts that nobody waits for, which have no window
    QPointer<QWidget> m_returning; ///< has been given the focus, which has not arrived yet
    QElapsedTimer m_sinceReturn;
    QObject m_context;
};

} // namespace brevok
