// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/linux/StatusNotifier.h"

#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "statusnotifieritemadaptor.h"
#include "ui/StatusItemImage.h"

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

const auto watcherName = u"org.kde.StatusNotifierWatcher"_s;
const auto watcherInterface = watcherName;
const auto watcherPath = u"/StatusNotifierWatcher"_s;
const auto itemPath = u"/StatusNotifierItem"_s;

/// Sides that bars use, and their doubles for screens of twice the pixels: the host has the right one for its
/// bar and needs not scale.
constexpr std::array iconSides{16, 22, 24, 32, 44, 48, 64};

QDBusMessage busCall(const QString &method, const QVariantList &arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, method);
    call.setArguments(arguments);
    return call;
}

NotifierPixmap onTheBus(const QImage &image)
{
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32);
    NotifierPixmap pixmap{
        pixels.width(), pixels.height(), QByteArray(pixels.sizeInBytes(), Qt::Uninitialized)};
    qToBigEndian<quint32>(pixels.constBits(), pixels.sizeInBytes() / 4, pixmap.argb.data());
    return pixmap;
}

} // namespace

StatusNotifier::StatusNotifier(const QDBusConnection &bus)
    : m_bus(bus)
    , m_watcher(watcherName, bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    if (!m_bus.isConnected()) {
        // Calls on such a bus are never answered. Later, for nobody listens yet.
        onMain(this, [this] { setHost(false); });
        return;
    }
    // Each item of a process has a name of its own, so that hosts notice when one goes.
    static int items = 0;
    m_name = u"org.kde.StatusNotifierItem-%1-%2"_s.arg(QCoreApplication::applicationPid()).arg(++items);
    registerNotifierTypes();
    new StatusNotifierItemAdaptor(this);
    m_bus.registerObject(itemPath, this, QDBusConnection::ExportAdaptors);
    constexpr uint doNotQueue = 4;
    m_bus.send(busCall(u"RequestName"_s, {m_name, doNotQueue}));

    lookForWatcher();
}

void StatusNotifier::lookForWatcher()
{
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](const QString & /*service*/, const QString & /*from*/, const QString &to) {
            watcherChanged(!to.isEmpty());
        });
    // With a service's name, this would wait for the answer who owns it.
    for (const QString &event : {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s}) {
        m_bus.connect({}, watcherPath, watcherInterface, event, this, SLOT(askForHost()));
    }
    auto *const answer =
        new QDBusPendingCallWatcher(m_bus.asyncCall(busCall(u"NameHasOwner"_s, {watcherName})), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<bool> reply = *answer;
        answer->deleteLater();
        if (!m_watcherRuns) {
            watcherChanged(reply.isValid() && reply.value());
        }
    });
}

StatusNotifier::~StatusNotifier()
{
    if (m_name.isEmpty()) {
        return;
    }
    m_bus.send(busCall(u"ReleaseName"_s, {m_name}));
    m_bus.unregisterObject(itemPath);
}

void StatusNotifier::setFace(qint64 updates, const QString &toolTip)
{
    if (m_updates != updates) {
        m_updates = updates;
        Q_EMIT NewIcon();
    }
    if (m_toolTip != toolTip) {
        m_toolTip = toolTip;
        Q_EMIT NewToolTip();
    }
}

void StatusNotifier::watcherChanged(bool running)
{
    m_watcherRuns = running;
    if (!running) {
        setHost(false);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherName, watcherPath, watcherName, u"RegisterStatusNotifierItem"_s);
    call << m_name;
    m_bus.send(call);
    askForHost();
}

void StatusNotifier::askForHost()
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
        setHost(m_watcherRuns && reply.isValid() && reply.value().variant().toBool());
    });
}

void StatusNotifier::setHost(bool host)
{
    if (m_host != host || !m_hostKnown) {
        m_host = host;
        m_hostKnown = true;
        Q_EMIT hostChanged();
    }
}

QString StatusNotifier::category() const
{
    return u"ApplicationStatus"_s;
}

QString StatusNotifier::id() const
{
    return u"tolvane-brevok"_s;
}

QString StatusNotifier::title() const
{
    return Texts::tr("Tolvane Brevok");
}

QString StatusNotifier::status() const
{
    return u"Active"_s;
}

QDBusObjectPath StatusNotifier::menu() const
{
    // By convention: there is none, so that a click always activates.
    return QDBusObjectPath(u"/NO_DBUSMENU"_s);
}

NotifierPixmaps StatusNotifier::iconPixmap() const
{
    // Drawn when a host asks. Bars on the bus do not tell their colours.
    NotifierPixmaps pixmaps;
    for (const int side : iconSides) {
        pixmaps.append(onTheBus(statusitem::squareImage(side, m_updates, statusitem::coloursFor({}))));
    }
    return pixmaps;
}

NotifierToolTip StatusNotifier::toolTip() const
{
    return {{}, {}, title(), m_toolTip};
}

void StatusNotifier::Activate(int x, int y)
{
    Q_EMIT activated({x, y});
}

void StatusNotifier::SecondaryActivate(int /*x*/, int /*y*/) { }

void StatusNotifier::ContextMenu(int /*x*/, int /*y*/) { }

void StatusNotifier::Scroll(int /*delta*/, const QString & /*orientation*/) { }

void StatusNotifier::ProvideXdgActivationToken(const QString &token)
{
    qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

} // namespace brevok
