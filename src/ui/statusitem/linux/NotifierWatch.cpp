// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/statusitem/linux/NotifierWatch.h"

#include "foundation/Tasks.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

const auto watcherName = u"org.kde.StatusNotifierWatcher"_s;
const auto watcherInterface = watcherName;
const auto watcherPath = u"/StatusNotifierWatcher"_s;

} // namespace

NotifierWatch::NotifierWatch(QDBusConnection bus)
    : m_bus(std::move(bus))
    , m_owner(watcherName, m_bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&m_owner, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString & /*service*/, const QString & /*from*/, const QString &to) {
            setRunning(!to.isEmpty());
        });
    if (m_bus.isConnected()) {
        lookForWatcher();
    } else {
        // Calls on such a bus are never answered. Later, for nobody listens yet.
        onMain(this, [this] { busLost(); });
    }
}

NotifierWatch::~NotifierWatch() = default;

void NotifierWatch::use(const QDBusConnection &bus)
{
    m_bus = bus;
    m_owner.setConnection(bus);
    m_running = false;
    Q_EMIT busChanged();
    lookForWatcher();
}

void NotifierWatch::busLost()
{
    if (!m_bus.isConnected()) {
        m_question.reset();
        setRunning(false);
    }
}

void NotifierWatch::lookForWatcher()
{
    m_bus.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s,
        this, SLOT(busLost()));
    // With a service's name, this would wait for the answer who owns it.
    for (const QString &event : {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s}) {
        m_bus.connect({}, watcherPath, watcherInterface, event, this, SLOT(askForHost()));
    }
    QDBusMessage question = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"NameHasOwner"_s);
    question << watcherName;
    m_question = m_bus.asyncCall(question);
    connect(new QDBusPendingCallWatcher(*m_question, this), &QDBusPendingCallWatcher::finished, this,
        [this](QDBusPendingCallWatcher *watcher) {
            watcher->deleteLater();
            readAnswer();
        });
}

void NotifierWatch::catchUp()
{
    if (m_question && m_question->isFinished()) {
        readAnswer();
    }
}

void NotifierWatch::readAnswer()
{
    if (!m_question) {
        return;
    }
    const QDBusPendingReply<bool> reply = *m_question;
    m_question.reset();
    if (!m_running) {
        setRunning(reply.isValid() && reply.value());
    }
}

void NotifierWatch::setRunning(bool running)
{
    m_running = running;
    if (!running) {
        setHost(false);
        return;
    }
    Q_EMIT started();
    askForHost();
}

void NotifierWatch::registerItem(const QString &item)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherName, watcherPath, watcherName, u"RegisterStatusNotifierItem"_s);
    call << item;
    m_bus.send(call);
}

void NotifierWatch::askForHost()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherName, watcherPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << watcherInterface << u"IsStatusNotifierHostRegistered"_s;
    // Nobody is to be started for this question.
    call.setAutoStartService(false);
    auto *const answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        answer->deleteLater();
        setHost(m_running && reply.isValid() && reply.value().variant().toBool());
    });
}

void NotifierWatch::setHost(bool host)
{
    if (m_host != host) {
        m_host = host;
        Q_EMIT hostChanged();
    }
}

} // namespace brevok
