// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "alerts/BrevokAlert.h"

#include "alerts/BrevokAlertQueue.h"
#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"

#include <QTimer>

#include <chrono>

namespace brevok {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A burst of identical alerts, raised while the first is being dismissed, must not show again at once.
constexpr auto keyRemovalDelay = 300ms;

// The first act of every operation that shows something. Whether the thread may show it.
bool mayShow(const AlertContent &content, const QString &format)
{
    logLine(format.arg(content.messageText.value_or(u"-"_s), content.informativeText.value_or(u"-"_s)));
    if (!onMainThread()) {
        logLine(u"Alert called from background thread."_s);
        return false;
    }
    return true;
}

// Names and messages from outside stand in many texts.
AlertContent fitToShow(AlertContent content)
{
    for (std::optional<QString> *text : {&content.messageText, &content.informativeText}) {
        if (*text) {
            *text = severalLines(**text);
        }
    }
    for (AlertButton &button : content.buttons) {
        button.title = oneLine(button.title);
    }
    return content;
}

QString usualFormat()
{
    return u"Alert: %1\n%2"_s;
}

QString sheetFormat()
{
    return u"Alert: \n%1\n%2"_s;
}

} // namespace

Alert::Alert(AlertPresenter &presenter, AlertContent initialContent)
    : content(std::move(initialContent))
    , m_presenter(presenter)
{
}

Alert::~Alert() = default;

void Alert::setDelegate(BrevokAlertQueue *queue)
{
    m_delegate = queue;
}

BrevokAlertQueue *Alert::delegate() const
{
    return m_delegate;
}

QString Alert::key() const
{
    return content.messageText.value_or(QString()) + content.informativeText.value_or(QString());
}

int Alert::runModal()
{
    return m_presenter.runModal(fitToShow(content));
}

AlertPresenter::Ending Alert::beginModal(AlertPresenter::Completion completion)
{
    return m_presenter.beginModal(fitToShow(content), std::move(completion));
}

void Alert::beginSheetModalForWindow(QObject *window, AlertPresenter::Completion completion)
{
    m_presenter.beginSheet(fitToShow(content), window, std::move(completion));
}

void Alert::beginSheetModalForWindow(QObject *window, Alert *modalDelegate, AlertPresenter::Completion block)
{
    m_presenter.beginSheet(fitToShow(content), window,
        [delegate = QPointer<Alert>(modalDelegate), sheetParent = QPointer<QObject>(window),
            context = std::move(block)](int returnCode) {
            if (delegate) {
                delegate->brevokSheetDidEnd(sheetParent, returnCode, context);
            }
        });
}

void Alert::openSheetModalForWindow(QObject *window, AlertPresenter::Completion completion)
{
    if (!mayShow(content, usualFormat())) {
        return;
    }
    switch (m_presenter.sheetInterface()) {
    case AlertPresenter::SheetInterface::WithHandler:
        beginSheetModalForWindow(window, std::move(completion));
        break;
    case AlertPresenter::SheetInterface::WithDelegate:
        beginSheetModalForWindow(window, this, std::move(completion));
        break;
    case AlertPresenter::SheetInterface::None:
        runModal();
        break;
    }
}

void Alert::brevokSheetDidEnd(
    QObject * /*sheet*/, int /*returnCode*/, const AlertPresenter::Completion &context)
{
    if (context) {
        context(alertContinued);
    }
}

void Alert::didEndSheet(QObject *sheet)
{
    if (sheet != nullptr) {
        sheet->setProperty("visible", false);
    }
}

void Alert::closeSheet(QObject *window)
{
    if (m_presenter.windowEndsSheets(window)) {
        m_presenter.windowEndSheet(window);
    } else {
        m_presenter.applicationEndSheet(window);
    }
}

BrevokAlert::BrevokAlert(AlertPresenter &presenter)
    : Alert(presenter)
{
}

std::unique_ptr<BrevokAlert> BrevokAlert::create(AlertPresenter &presenter)
{
    if (!onMainThread()) {
        logLine(u"Alert created from background thread."_s);
        return nullptr;
    }
    return std::unique_ptr<BrevokAlert>(new BrevokAlert(presenter));
}

std::unique_ptr<BrevokAlert> BrevokAlert::alertWithError(AlertPresenter &presenter, const BrevokError &error)
{
    std::unique_ptr<BrevokAlert> alert = create(presenter);
    if (alert) {
        alert->content.messageText = error.description;
        if (!error.recoverySuggestion.isEmpty()) {
            alert->content.informativeText = error.recoverySuggestion;
        }
        alert->content.buttons = {AlertButton{Texts::tr("OK")}};
    }
    return alert;
}

BrevokAlert::~BrevokAlert()
{
    if (BrevokAlertQueue *queue = delegate()) {
        QTimer::singleShot(keyRemovalDelay, queue, [queue, shown = key()] { queue->removeFromQueue(shown); });
    }
}

BrevokBlockingAlert::BrevokBlockingAlert(
    AlertPresenter &presenter, PanelKeeper *panel, AlertContent initialContent)
    : Alert(presenter, std::move(initialContent))
    , m_panel(panel)
{
}

int BrevokBlockingAlert::runModal()
{
    if (!mayShow(content, usualFormat()) || m_panel == nullptr) {
        return alertStopped;
    }
    m_panel->setKeepOpenPanel(true);
    const int response = Alert::runModal();
    m_panel->setKeepOpenPanel(false);
    return response;
}

// The panel is held open only while the sheet is being attached: the call returns at once.
void BrevokBlockingAlert::beginSheetModalForWindow(QObject *window, AlertPresenter::Completion completion)
{
    if (!mayShow(content, sheetFormat()) || m_panel == nullptr) {
        return;
    }
    m_panel->setKeepOpenPanel(true);
    Alert::beginSheetModalForWindow(window, std::move(completion));
    m_panel->setKeepOpenPanel(false);
}

void BrevokBlockingAlert::beginSheetModalForWindow(
    QObject *window, Alert *modalDelegate, AlertPresenter::Completion block)
{
    if (!mayShow(content, sheetFormat()) || m_panel == nullptr) {
        return;
    }
    m_panel->setKeepOpenPanel(true);
    Alert::beginSheetModalForWindow(window, modalDelegate, std::move(block));
    m_panel->setKeepOpenPanel(false);
}

} // namespace brevok
