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
    for (const TurnPtr &turn : std::as_const(m_turns)) {
        turn->ending = {}; // it holds the turn, which would never be freed
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
    auto turn = std::make_shared<Turn>();
    turn->alert = &alert;
    turn->context = context;
    turn->answered = std::move(answered);
    return queue(turn);
}

void BrevokAlertQueue::show(
    std::unique_ptr<Alert> alert, QObject *context, AlertPresenter::Completion answered)
{
    if (!alert) {
        return; // made on another thread, which was logged
    }
    auto turn = std::make_shared<Turn>();
    turn->alert = alert.get();
    turn->owned = std::move(alert);
    turn->context = context;
    turn->answered = std::move(answered);
    queue(turn);
}

AlertPresenter::Ending BrevokAlertQueue::queue(const TurnPtr &turn)
{
    const QString key = turn->alert->key();
    if (!mayShow(*turn->alert) || m_keys.contains(key)) {
        turn->alert->setDelegate(nullptr); // another alert blocks this text
        if (turn->context && turn->answered) {
            turn->answered(alertNotShown);
        }
        return [](int) {
        };
    }
    m_keys.insert(key);
    m_turns.append(turn);
    showNext();
    return [self = QPointer(this), turn](int response) {
        if (turn->up && turn->ending) {
            const AlertPresenter::Ending end = turn->ending; // the call clears the member
            end(response);
        } else if (self && !turn->over) {
            self->endTurn(turn, response);
        }
    };
}

void BrevokAlertQueue::showNext()
{
    m_turns.removeIf([](const TurnPtr &turn) { return turn->alert.isNull(); });
    if (m_turns.isEmpty() || m_turns.constFirst()->up || m_awaited > 0) {
        return;
    }
    const TurnPtr turn = m_turns.constFirst();
    turn->up = true;
    m_panel.setKeepOpenPanel(true);
    AlertPresenter::Ending ending = turn->alert->beginModal([self = QPointer(this), turn](int response) {
        turn->up = false;
        if (self) {
            self->m_panel.setKeepOpenPanel(false);
            self->endTurn(turn, response);
        }
    });
    if (turn->up) {
        turn->ending = std::move(ending);
    }
}

void BrevokAlertQueue::endTurn(const TurnPtr &turn, int response)
{
    turn->over = true;
    turn->ending = {};
    m_turns.removeOne(turn);
    const AlertPresenter::Completion answered = std::exchange(turn->answered, {});
    if (turn->context && answered) {
        answered(response);
    }
    // Later, because the alert may be what called this.
    onMain(this, [turn] { turn->owned.reset(); });
    showNextLater();
}

void BrevokAlertQueue::showNextLater()
{
    onMain(this, [this] { showNext(); });
}

std::unique_ptr<BrevokAlert> BrevokAlertQueue::build(
    const QString &messageText, const QString &informativeText, const QStringList &buttons)
{
    std::unique_ptr<BrevokAlert> alert = BrevokAlert::create(m_presenter);
    if (!alert) {
        return alert;
    }
    alert->content.messageText = messageText;
    if (!informativeText.isEmpty()) {
        alert->content.informativeText = informativeText;
    }
    for (const QString &title : buttons) {
        alert->content.buttons.append(AlertButton{title});
    }
    return alert;
}

void BrevokAlertQueue::tell(
    const QString &messageText, const QString &informativeText, const QStringList &buttons)
{
    if (std::unique_ptr<BrevokAlert> alert = build(messageText, informativeText, buttons)) {
        alert->content.informativeText = informativeText; // logged as it was given
        show(std::move(alert), this);
    }
}

int BrevokAlertQueue::modalAlert(const QString &messageText, const QString &informativeText,
    const QString &icon, const QStringList &buttons, const QVariant &accessory)
{
    logLine(u"Alert: %1\n%2"_s.arg(messageText, informativeText));
    if (refusedThread() || m_keys.contains(messageText + informativeText)) {
        return alertNotShown;
    }
    const std::unique_ptr<BrevokAlert> alert = build(messageText, informativeText, buttons);
    alert->setDelegate(this);
    alert->content.icon = icon;
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
    ++m_awaited;
    m_panel.setKeepOpenPanel(true);
    const int response = alert.runModal();
    m_panel.setKeepOpenPanel(false);
    if (--m_awaited == 0) {
        showNextLater();
    }
    return response;
}

void BrevokAlertQueue::removeFromQueue(const QString &key)
{
    m_keys.remove(key);
}

} // namespace brevok
