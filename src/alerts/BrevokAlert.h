// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/AlertPresenter.h"
#include "foundation/BrevokError.h"

#include <QObject>
#include <QPointer>

#include <memory>

namespace brevok {

class BrevokAlertQueue;

/// A message box: texts, buttons, and the ways to show it. Showing is for the main thread only; elsewhere it
/// is refused with a log line.
class Alert : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Alert)

public:
    explicit Alert(AlertPresenter &presenter, AlertContent initialContent = {});
    ~Alert() override;

    AlertContent content;

    /// Set by the queue that shows the alert.
    void setDelegate(BrevokAlertQueue *queue);

    /// Runs application-modally. The plain alert has no rules of its own: it just asks the presenter.
    virtual int runModal();
    /// The same without waiting; see AlertPresenter::beginModal().
    AlertPresenter::Ending beginModal(AlertPresenter::Completion completion);
    virtual void beginSheetModalForWindow(QObject *window, AlertPresenter::Completion completion);
    virtual void beginSheetModalForWindow(
        QObject *window, Alert *modalDelegate, AlertPresenter::Completion block);

    /// Opens the alert as a sheet by whatever interface the system has; on the older one @p completion always
    /// gets alertContinued, and with none it is never called. The alert stays alive until the sheet ended.
    void openSheetModalForWindow(QObject *window, AlertPresenter::Completion completion);
    void brevokSheetDidEnd(QObject *sheet, int returnCode, const AlertPresenter::Completion &context);
    /// Takes the window of an ended sheet off the screen.
    static void didEndSheet(QObject *sheet);
    void closeSheet(QObject *window);

    /// Message text immediately followed by informative text: what makes two alerts the same.
    [[nodiscard]] QString key() const;

protected:
    [[nodiscard]] BrevokAlertQueue *delegate() const;

private:
    AlertPresenter &m_presenter;
    QPointer<BrevokAlertQueue> m_delegate;
};

/// An alert that exists on the main thread only and, when it goes, lets its text be shown again 0.3 seconds
/// later.
class BrevokAlert final : public Alert {
    Q_OBJECT

public:
    /// Nothing, with a log line, on any other thread than the main one.
    [[nodiscard]] static std::unique_ptr<BrevokAlert> create(AlertPresenter &presenter);
    /// The alert that tells of an error: its description, its recovery suggestion, one button.
    [[nodiscard]] static std::unique_ptr<BrevokAlert> alertWithError(
        AlertPresenter &presenter, const BrevokError &error);
    ~BrevokAlert() override;

private:
    explicit BrevokAlert(AlertPresenter &presenter);
};

/// An alert that keeps the panel open while it runs.
class BrevokBlockingAlert final : public Alert {
    Q_OBJECT

public:
    /// @p panel is null while there is no application delegate: then nothing is shown.
    BrevokBlockingAlert(AlertPresenter &presenter, PanelKeeper *panel, AlertContent initialContent = {});

    int runModal() override;
    void beginSheetModalForWindow(QObject *window, AlertPresenter::Completion completion) override;
    void beginSheetModalForWindow(
        QObject *window, Alert *modalDelegate, AlertPresenter::Completion block) override;

private:
    PanelKeeper *m_panel;
};

} // namespace brevok
