// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "alerts/BrevokAlertQueue.h"

#include "foundation/Log.h"
#include "foundation/Tasks.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

BrevokAlertQueue *sharedQueue = nullptr;

bool refusedThread()
{
    if (onMainThread()) {
        return false;
    }
    logLine(u"Alert called from background thread."_s);
    return true;
}

} // namespace

BrevokAlertQueue::BrevokAlertQueue(AlertPresenter &presenter, PanelKeeper &panel, QObject *parent)
    : QObject(parent)
    , m_presenter(presenter)
    , m_panel(panel)
{
    if (sharedQueue == nullptr) {
        sharedQueue = this;
    }
}

BrevokAlertQueue::~BrevokAlertQueue()
{
    if (sharedQueue == this) {
        sharedQueue = nullptr;
    }
}

BrevokAlertQueue *BrevokAlertQueue::alertQueue()
{
    return sharedQueue;
}

bool BrevokAlertQueue::mayShow(Alert &alert)
{
    logLine(u"Alert: %1\n%2"_s.arg(
        alert.content.messageText.value_or(u"-"_s), alert.content.informativeText.value_or(u"-"_s)));
    if (refusedThread()) {
        return false;
    }
    alert.setDelegate(this);
    return true;
}

int BrevokAlertQueue::runModal(Alert &alert)
{
    return mayShow(alert) ? showOnce(alert) : alertNotShown;
}

AlertPresenter::Ending BrevokAlertQueue::beginModal(
    Alert &alert, QObject *context, AlertPresenter::Completion answered)
{
    if (!mayShow(alert) || m_keys.contains(alert.key())) {
        answered(alertNotShown);
        return [](int) {
        };
    }
    m_keys.insert(alert.key());
    m_panel.setKeepOpenPanel(true);
    return alert.beginModal([queue = QPointer<BrevokAlertQueue>(this), guard = QPointer<QObject>(context),
                                answered = std::move(answered)](int response) {
        if (queue) {
            queue->m_panel.setKeepOpenPanel(false);
        }
        if (guard) {
            answered(response);
        }
    });
}

int BrevokAlertQueue::modalAlert(const QString &messageText, const QString &informativeText,
    const QString &icon, const QStringList &buttons, const QVariant &accessory)
{
    logLine(u"Alert: %1\n%2"_s.arg(messageText, informativeText));
    if (refusedThread() || m_keys.contains(messageText + informativeText)) {
        return alertNotShown;
    }
    const std::unique_ptr<BrevokAlert> alert = BrevokAlert::create(m_presenter);
    alert->setDelegate(this);
    alert->content.messageText = messageText;
    if (!informativeText.isEmpty()) {
        alert->content.informativeText = informativeText;
    }
    alert->content.icon = icon;
    for (const QString &title : buttons) {
        alert->content.buttons.append(AlertButton{title});
    }
    alert->content.accessory = accessory;
    return showOnce(*alert);
}

// The key stays until the alert itself goes; an alert that never removes it blocks its text for good.
int BrevokAlertQueue::showOnce(Alert &alert)
{
    const QString key = alert.key();
    if (m_keys.contains(key)) {
        return alertNotShown;
    }
    m_keys.insert(key);
    m_panel.setKeepOpenPanel(true);
    const int response = alert.runModal();
    m_panel.setKeepOpenPanel(false);
    return response;
}

void BrevokAlertQueue::removeFromQueue(const QString &key)
{
    m_keys.remove(key);
}

} // namespace brevok
