// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QFile>
#include <QProcess>

#include <memory>

namespace brevok::testing {

/// A system bus of the test's own: a real daemon, for this process and those it starts. Made before anything
/// asks for a bus.
class PrivateSystemBus final {
public:
    PrivateSystemBus()
    {
        m_daemon.start(QStringLiteral("dbus-daemon"),
            {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                QStringLiteral("--print-address")});
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
        m_bus.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
        m_bus.registerService(QStringLiteral("org.freedesktop.PackageKit"));
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
        QDBusMessage signal = transactionSignal(QStringLiteral("Finished"));
        signal << exit << 12U;
        m_bus.send(signal);
        m_bus.send(transactionSignal(QStringLiteral("Destroy")));
    }

    void tellPercentage(uint percentage)
    {
        QDBusMessage signal = QDBusMessage::createSignal(transactionPath(),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("PropertiesChanged"));
        signal << QStringLiteral("org.freedesktop.PackageKit.Transaction")
               << QVariantMap{{QStringLiteral("Percentage"), percentage}} << QStringList();
        m_bus.send(signal);
    }

    [[nodiscard]] QString introspect(const QString &) const override { return {}; }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        if (message.member() == QStringLiteral("CreateTransaction")) {
            ++transactions;
            const QDBusMessage error =
                message.createErrorReply(QDBusError::LimitsExceeded, QStringLiteral("too many"));
            bus.send(m_act == Act::NoTransaction
                    ? error
                    : message.createReply(QVariant::fromValue(QDBusObjectPath(transactionPath()))));
        } else if (message.member() == QStringLiteral("SetHints")) {
            hints = message.arguments().value(0).toStringList();
            bus.send(message.createReply());
        } else if (message.member() == QStringLiteral("InstallFiles")) {
            flags = message.arguments().value(0).toULongLong();
            paths = message.arguments().value(1).toStringList();
            install(message);
        }
        return true;
    }

private:
    static QString connectionName() { return QStringLiteral("packagekit-player"); }
    static QString transactionPath() { return QStringLiteral("/45_dafeca"); }

    static QDBusMessage transactionSignal(const QString &name)
    {
        return QDBusMessage::createSignal(
            transactionPath(), QStringLiteral("org.freedesktop.PackageKit.Transaction"), name);
    }

    void die()
    {
        QDBusConnection::disconnectFromBus(connectionName());
        m_bus = QDBusConnection(QString());
    }

    void tellError()
    {
        QDBusMessage signal = transactionSignal(QStringLiteral("ErrorCode"));
        signal << 42U << QStringLiteral("The disk is full.");
        m_bus.send(signal);
    }

    void install(const QDBusMessage &message)
    {
        if (m_act == Act::RefuseCall) {
            m_bus.send(message.createErrorReply(QDBusError::AccessDenied, QStringLiteral("not for you")));
            return;
        }
        QFile file(paths.value(0));
        permissions = file.permissions();
        if (file.open(QIODevice::ReadOnly)) {
            installed = file.readAll();
        }
        m_bus.send(message.createReply());
        switch (m_act) {
        case Act::Install:
            tellPercentage(101);
            tellPercentage(40);
            finish(1);
            break;
        case Act::Refuse:
            tellError();
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
            m_bus.send(transactionSignal(QStringLiteral("Destroy")));
            break;
        default:
            break;
        }
    }

    Act m_act;
    QDBusConnection m_bus;
};

} // namespace brevok::testing
