// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/Folders.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QProcess>

#include <memory>

namespace brevok::testing {

using namespace Qt::StringLiterals;

/// A system bus of the test's own: a real daemon, for this process and those it starts. Made before anything
/// asks for a bus.
class PrivateSystemBus final {
public:
    PrivateSystemBus()
    {
        m_daemon.start(
            u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s});
        while (m_daemon.state() != QProcess::NotRunning && !m_daemon.canReadLine()) {
            m_daemon.waitForReadyRead();
        }
        m_address = m_daemon.readLine().trimmed();
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", m_address);
    }
    ~PrivateSystemBus()
    {
        m_daemon.terminate();
        m_daemon.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(PrivateSystemBus)

    [[nodiscard]] QString address() const { return QString::fromLatin1(m_address); }

private:
    QProcess m_daemon;
    QByteArray m_address;
};

/// PackageKit, as far as an application sees it, on a connection of its own.
class PackageKitPlayer final : public QDBusVirtualObject {
public:
    enum class Act {
        Install,
        Refuse, ///< an error, then the end of the transaction
        RefuseCall, ///< the method itself fails
        Cancel,
        NoTransaction, ///< none can be made
        Die, ///< the daemon goes while it installs
        Vanish, ///< the transaction goes without a word
        Wait, ///< until finish() is called
    };

    PackageKitPlayer(const QString &address, Act act)
        : m_act(act)
        , m_bus(QDBusConnection::connectToBus(address, connectionName()))
    {
        m_bus.registerVirtualObject(u"/"_s, this, QDBusConnection::SubPath);
        m_bus.registerService(u"org.freedesktop.PackageKit"_s);
    }
    ~PackageKitPlayer() override { QDBusConnection::disconnectFromBus(connectionName()); }
    Q_DISABLE_COPY_MOVE(PackageKitPlayer)

    QStringList hints;
    qulonglong flags = ~0ULL;
    QStringList paths;
    QByteArray installed; ///< what the file held
    QFile::Permissions permissions; ///< of the file
    int transactions = 0;

    void finish(uint exit)
    {
        tell(u"Finished"_s, {exit, 12U});
        tell(u"Destroy"_s);
    }

    void tellPercentage(uint percentage)
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            transactionPath(), u"org.freedesktop.DBus.Properties"_s, u"PropertiesChanged"_s);
        signal.setArguments({u"org.freedesktop.PackageKit.Transaction"_s,
            QVariantMap{{u"Percentage"_s, percentage}}, QStringList()});
        m_bus.send(signal);
    }

    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        if (message.member() == u"CreateTransaction"_s) {
            ++transactions;
            const QDBusMessage error = message.createErrorReply(QDBusError::LimitsExceeded, u"too many"_s);
            bus.send(m_act == Act::NoTransaction
                    ? error
                    : message.createReply(QVariant::fromValue(QDBusObjectPath(transactionPath()))));
        } else if (message.member() == u"SetHints"_s) {
            hints = message.arguments().value(0).toStringList();
            bus.send(message.createReply());
        } else if (message.member() == u"InstallFiles"_s) {
            flags = message.arguments().value(0).toULongLong();
            paths = message.arguments().value(1).toStringList();
            install(message);
        }
        return true;
    }

private:
    static QString connectionName() { return u"packagekit-player"_s; }
    static QString transactionPath() { return u"/45_dafeca"_s; }

    void tell(const QString &name, const QVariantList &values = {})
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(transactionPath(), u"org.freedesktop.PackageKit.Transaction"_s, name);
        signal.setArguments(values);
        m_bus.send(signal);
    }

    void die()
    {
        QDBusConnection::disconnectFromBus(connectionName());
        m_bus = QDBusConnection(QString());
    }

    void install(const QDBusMessage &message)
    {
        if (m_act == Act::RefuseCall) {
            m_bus.send(message.createErrorReply(QDBusError::AccessDenied, u"not for you"_s));
            return;
        }
        permissions = QFile::permissions(paths.value(0));
        installed = contentsOf(paths.value(0));
        m_bus.send(message.createReply());
        switch (m_act) {
        case Act::Install:
            tellPercentage(101);
            tellPercentage(40);
            finish(1);
            break;
        case Act::Refuse:
            tell(u"ErrorCode"_s, {42U, u"The disk is full."_s});
            finish(2);
            break;
        case Act::Cancel:
            finish(3);
            break;
        case Act::Die:
            QMetaObject::invokeMethod(
                this, [this] { die(); }, Qt::QueuedConnection);
            break;
        case Act::Vanish:
            tell(u"Destroy"_s);
            break;
        default:
            break;
        }
    }

    Act m_act;
    QDBusConnection m_bus;
};

} // namespace brevok::testing
