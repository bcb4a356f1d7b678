// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/statusitem/linux/StatusNotifier.h"

#include "foundation/Texts.h"
#include "statusnotifieritemadaptor.h"
#include "ui/statusitem/linux/NotifierWatch.h"
#include "ui/statusitem/StatusItemImage.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

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

StatusNotifier::StatusNotifier(NotifierWatch &watch)
    : m_watch(watch)
{
    // Each item of a process has a name of its own, so that hosts notice when one goes.
    static int items = 0;
    m_name = u"org.kde.StatusNotifierItem-%1-%2"_s.arg(QCoreApplication::applicationPid()).arg(++items);
    registerNotifierTypes();
    new StatusNotifierItemAdaptor(this);
    joinBus();
    connect(&watch, &NotifierWatch::busChanged, this, &StatusNotifier::joinBus);
    connect(&watch, &NotifierWatch::started, this, [this] { m_watch.registerItem(m_name); });
    if (watch.isRunning()) {
        watch.registerItem(m_name);
    }
}

StatusNotifier::~StatusNotifier()
{
    QDBusConnection bus = m_watch.bus();
    if (bus.isConnected()) {
        bus.send(busCall(u"ReleaseName"_s, {m_name}));
        bus.unregisterObject(itemPath);
    }
}

void StatusNotifier::joinBus()
{
    QDBusConnection bus = m_watch.bus();
    if (bus.isConnected()) {
        bus.registerObject(itemPath, this, QDBusConnection::ExportAdaptors);
        constexpr uint doNotQueue = 4;
        bus.send(busCall(u"RequestName"_s, {m_name, doNotQueue}));
    }
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
