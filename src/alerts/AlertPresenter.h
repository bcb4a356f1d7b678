// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/AlertContent.h"

#include <functional>

class QObject;

namespace brevok {

/// Shows alerts: windows on a desktop, nothing on a machine without one. Main thread only.
class AlertPresenter {
public:
    /// Which sheet interfaces the running system offers.
    enum class SheetInterface { None, WithDelegate, WithHandler };
    using Completion = std::function<void(int response)>;

    AlertPresenter() = default;
    virtual ~AlertPresenter() = default;
    Q_DISABLE_COPY_MOVE(AlertPresenter)

    /// Shows the alert application-modally and returns its answer (alertFirstButton and so on), or
    /// alertNotShown.
    virtual int runModal(const AlertContent &alert) = 0;

    /// Closes an alert as if the user had given this answer; does nothing once it was answered.
    using Ending = std::function<void(int response)>;
    /// As runModal(), but returns at once: @p completion gets the answer, before this returns when the alert
    /// is not shown. It is not called for an alert that is still up when the presenter goes.
    virtual Ending beginModal(const AlertContent &alert, Completion completion) = 0;

    [[nodiscard]] virtual SheetInterface sheetInterface() const = 0;
    /// Attaches the alert to @p window and returns at once; @p completion gets the answer when the sheet
    /// ends.
    virtual void beginSheet(const AlertContent &alert, QObject *window, Completion completion) = 0;
    /// Whether @p window can end a sheet itself; else the application does.
    [[nodiscard]] virtual bool windowEndsSheets(QObject *window) const = 0;
    virtual void windowEndSheet(QObject *window) = 0;
    virtual void applicationEndSheet(QObject *window) = 0;
};

/// What the panel offers to alerts: while an alert is up it does not close by itself.
class PanelKeeper {
public:
    PanelKeeper() = default;
    virtual ~PanelKeeper() = default;
    Q_DISABLE_COPY_MOVE(PanelKeeper)

    virtual void setKeepOpenPanel(bool keepOpen) = 0;
};

/// The presenter of a program without windows: says in the log that the alert was not shown, and answers so.
/// A sheet's completion gets alertNotShown before beginSheet() returns, so that nobody waits for an answer.
class HeadlessAlertPresenter final : public AlertPresenter {
public:
    int runModal(const AlertContent &alert) override;
    Ending beginModal(const AlertContent &alert, Completion completion) override;
    [[nodiscard]] SheetInterface sheetInterface() const override;
    void beginSheet(const AlertContent &alert, QObject *window, Completion completion) override;
    [[nodiscard]] bool windowEndsSheets(QObject *window) const override;
    void windowEndSheet(QObject *window) override;
    void applicationEndSheet(QObject *window) override;
};

} // namespace brevok
