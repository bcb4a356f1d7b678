// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/SessionBus.h"

#include "foundation/Log.h"
#include "foundation/Tasks.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QPointer>
#include <QUrl>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr auto ownConnections = "brevok session bus "_L1;
constexpr int firstIntervalMs = 50;
constexpr int mostAttempts = 12; // the intervals double: for three and a half minutes after the loss

// The address of a socket, without the identity of the bus: one that was started again has another. Empty for
// what is no socket.
QString busAddress()
{
    const QString named = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (named.isEmpty()) {
        const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
        return runtimeFolder.isEmpty() ? QString() : u"unix:path=%1/bus"_s.arg(runtimeFolder);
    }
    if (!named.startsWith("unix:"_L1)) {
        return {};
    }
    QStringList parts = named.section(u';', 0, 0).split(u',');
    parts.removeIf([](const QString &part) { return part.startsWith("guid="_L1); });
    return parts.join(u',');
}

// The socket in the file system, if the address is one.
QString socketPath()
{
    const QString prefix = u"unix:path="_s;
    const QString address = busAddress();
    return address.startsWith(prefix)
        ? QUrl::fromPercentEncoding(address.mid(prefix.size()).section(u',', 0, 0).toUtf8())
        : QString();
}

} // namespace

SessionBus::SessionBus(QObject *parent)
    : QObject(parent)
    , m_connection(QDBusConnection::sessionBus())
{
    m_nextAttempt.setSingleShot(true);
    connect(&m_nextAttempt, &QTimer::timeout, this, &SessionBus::attempt);
    if (m_connection.isConnected()) {
        listen();
    } else {
        watchSocket();
    }
}

SessionBus::~SessionBus() = default;

bool SessionBus::startedThisProgram()
{
    return qEnvironmentVariableIsSet("DBUS_STARTER_ADDRESS");
}

void SessionBus::listen()
{
    m_connection.connect({}, u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
        u"Disconnected"_s, this, SLOT(lost()));
    connect(m_connection.interface(), &QDBusConnectionInterface::serviceRegistered, this,
        [this](const QString &name) {
            if (name == m_name) {
                Q_EMIT nameAcquired();
            }
        });
}

SessionBus::Name SessionBus::takeName(const QString &name)
{
    m_name = name;
    if (!m_connection.isConnected()) {
        return Name::NoBus;
    }
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        m_connection.interface()->registerService(name, QDBusConnectionInterface::QueueService);
    return reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered ? Name::Ours
                                                                                           : Name::Theirs;
}

void SessionBus::leaveName()
{
    if (m_connection.isConnected() && !m_name.isEmpty()) {
        m_connection.interface()->unregisterService(m_name);
    }
    m_name.clear();
}

void SessionBus::lost()
{
    logLine(u"The session bus is gone; this copy cannot be controlled from outside until it returns."_s);
    watchSocket();
    m_attempts = 0;
    attemptSoon();
    Q_EMIT gone();
}

void SessionBus::watchSocket()
{
    const QString folder = QFileInfo(socketPath()).path();
    if (QDir::isAbsolutePath(folder)) {
        m_folder = std::make_unique<QFileSystemWatcher>(QStringList{folder});
        connect(
            m_folder.get(), &QFileSystemWatcher::directoryChanged, this, &SessionBus::socketFolderChanged);
    }
}

void SessionBus::socketFolderChanged()
{
    if (QFileInfo::exists(socketPath()) && !m_nextAttempt.isActive()) {
        m_attempts = 0;
        attemptSoon();
    }
}

// Later, since a socket can be seen before anybody answers at it.
void SessionBus::attemptSoon()
{
    if (m_attempts < mostAttempts && !m_attempting && !busAddress().isEmpty()) {
        m_nextAttempt.start(firstIntervalMs << m_attempts++);
    }
}

void SessionBus::attempt()
{
    m_attempting = true;
    const QString name = ownConnections + QString::number(++m_connectionsMade);
    inBackground([this, name, guard = QPointer<SessionBus>(this), address = busAddress()] {
        const QDBusConnection fresh = QDBusConnection::connectToBus(address, name);
        if (!fresh.isConnected()) {
            QDBusConnection::disconnectFromBus(name);
        }
        onMain(QCoreApplication::instance(), [this, guard, fresh] {
            if (guard) {
                m_attempting = false;
                take(fresh);
            }
        });
    });
}

void SessionBus::take(const QDBusConnection &fresh)
{
    if (!fresh.isConnected()) {
        attemptSoon();
        return;
    }
    const QString before = m_connection.name();
    m_connection = fresh;
    m_folder.reset();
    listen();
    logLine(u"The session bus is back."_s);
    Q_EMIT returned();
    if (before.startsWith(ownConnections)) {
        QDBusConnection::disconnectFromBus(before); // the first one is the library's
    }
    if (!m_name.isEmpty()) {
        QDBusMessage call = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s,
            u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"RequestName"_s);
        constexpr uint waitInLine = 0;
        call.setArguments({m_name, waitInLine});
        m_connection.asyncCall(call);
    }
}

} // namespace brevok
