// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/privileges/PackageKitTransaction.h"

#include "foundation/Log.h"
#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "platform/linux/BusCalls.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QLocale>

#include <limits>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

const QString serviceName = u"org.freedesktop.PackageKit"_s;
const QString servicePath = u"/org/freedesktop/PackageKit"_s;
const QString serviceInterface = u"org.freedesktop.PackageKit"_s;
const QString transactionInterface = u"org.freedesktop.PackageKit.Transaction"_s;
const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;

// How a transaction ended, as the daemon numbers it.
enum Exit : uint { ExitSuccess = 1, ExitCancelled = 3 };

// Neither reinstalls nor downgrades. Packages that come as files bear no signature that the daemon knows, so
// "only trusted" would refuse every one; ours was verified before.
constexpr qulonglong noFlags = 0;
// The daemon may ask for an administrator's password before it answers.
constexpr int withoutEnd = std::numeric_limits<int>::max();

BrevokError softwareError(SoftwareError code, const QString &description)
{
    return {.domain = QString::fromLatin1(softwareErrorDomain),
        .code = static_cast<int>(code),
        .description = description};
}

BrevokError unavailable(const QString &reason)
{
    BrevokError error = softwareError(SoftwareError::Unavailable,
        Texts::tr("The system's software service (PackageKit) is not available."));
    error.details = {{u"Reason"_s, reason}};
    return error;
}

BrevokError refused(const QString &reason)
{
    return softwareError(SoftwareError::Refused,
        Texts::tr("The system's software service did not install the package: %1").arg(reason));
}

BrevokError ended()
{
    return softwareError(SoftwareError::Ended,
        Texts::tr("The system's software service stopped before the package was installed."));
}

QString newConnectionName()
{
    static int count = 0;
    return u"brevok-software-%1"_s.arg(++count);
}

} // namespace

PackageKitTransaction::PackageKitTransaction(
    SoftwareInstaller::ProgressHandler progress, SoftwareInstaller::DoneHandler done, QObject *context)
    : QObject(context)
    , m_connectionName(newConnectionName())
    , m_bus(QDBusConnection::connectToBus(QDBusConnection::SystemBus, m_connectionName))
    , m_progress(std::move(progress))
    , m_done(std::move(done))
{
    m_watcher.setConnection(m_bus);
    m_watcher.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { settle(brevok::ended()); });
}

PackageKitTransaction::~PackageKitTransaction()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void PackageKitTransaction::install(const QString &path)
{
    if (!m_bus.isConnected()) {
        settle(unavailable(m_bus.lastError().message()));
        return;
    }
    const QDBusMessage create =
        QDBusMessage::createMethodCall(serviceName, servicePath, serviceInterface, u"CreateTransaction"_s);
    whenAnswered(
        this, m_bus.asyncCall(create), [this, path](const QDBusMessage &reply) { created(reply, path); });
}

void PackageKitTransaction::created(const QDBusMessage &reply, const QString &path)
{
    m_transaction = qvariant_cast<QDBusObjectPath>(reply.arguments().value(0)).path();
    if (reply.type() != QDBusMessage::ReplyMessage || m_transaction.isEmpty()) {
        settle(unavailable(reply.errorMessage()));
        return;
    }
    // The reply itself does not say its sender in every version of Qt.
    QDBusMessage owner = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetNameOwner"_s);
    owner << serviceName;
    whenAnswered(
        this, m_bus.asyncCall(owner), [this, path](const QDBusMessage &answer) { begin(answer, path); });
}

void PackageKitTransaction::begin(const QDBusMessage &owner, const QString &path)
{
    m_daemon = owner.arguments().value(0).toString();
    if (owner.type() != QDBusMessage::ReplyMessage || m_daemon.isEmpty()) {
        settle(brevok::ended());
        return;
    }
    listen();
    QDBusMessage hints = call(u"SetHints"_s);
    hints << QStringList{
        u"interactive=true"_s, u"background=false"_s, u"locale=%1.UTF-8"_s.arg(QLocale().name())};
    whenAnswered(this, m_bus.asyncCall(hints), [](const QDBusMessage &answer) {
        if (answer.type() == QDBusMessage::ErrorMessage) {
            logLine(u"The software service takes no hints: %1"_s.arg(answer.errorMessage()));
        }
    });
    QDBusMessage install = call(u"InstallFiles"_s);
    install << noFlags << QStringList{path};
    whenAnswered(this, m_bus.asyncCall(install, withoutEnd), [this](const QDBusMessage &answer) {
        if (answer.type() == QDBusMessage::ErrorMessage) {
            settle(refused(m_details.isEmpty() ? answer.errorMessage() : m_details));
        }
    });
}

void PackageKitTransaction::listen()
{
    m_watcher.addWatchedService(m_daemon);
    const auto on = [this](const QString &interface, const QString &signal, const char *slot) {
        if (!m_bus.connect(m_daemon, m_transaction, interface, signal, this, slot)) {
            logLine(u"The software service's signal %1 cannot be heard."_s.arg(signal));
        }
    };
    on(transactionInterface, u"ErrorCode"_s, SLOT(errorCode(uint, QString)));
    on(transactionInterface, u"Finished"_s, SLOT(finished(uint, uint)));
    on(transactionInterface, u"Destroy"_s, SLOT(destroyedByDaemon()));
    on(propertiesInterface, u"PropertiesChanged"_s,
        SLOT(propertiesChanged(QString, QVariantMap, QStringList)));
}

QDBusMessage PackageKitTransaction::call(const QString &method) const
{
    return QDBusMessage::createMethodCall(m_daemon, m_transaction, transactionInterface, method);
}

void PackageKitTransaction::errorCode(uint, const QString &details)
{
    m_details = details;
}

void PackageKitTransaction::finished(uint exit, uint)
{
    if (exit == ExitSuccess) {
        settle(std::nullopt);
    } else if (exit == ExitCancelled) {
        settle(softwareError(SoftwareError::Cancelled, Texts::tr("The installation was cancelled.")));
    } else {
        settle(refused(m_details.isEmpty() ? QString::number(exit) : m_details));
    }
}

void PackageKitTransaction::destroyedByDaemon()
{
    settle(m_details.isEmpty() ? brevok::ended() : refused(m_details));
}

void PackageKitTransaction::propertiesChanged(
    const QString &, const QVariantMap &changed, const QStringList &)
{
    const auto percentage = changed.constFind(u"Percentage"_s);
    if (percentage != changed.constEnd() && m_done && m_progress) {
        const int percent = percentage->toInt();
        m_progress(percent >= 0 && percent <= 100 ? percent : -1);
    }
}

void PackageKitTransaction::settle(const std::optional<BrevokError> &error)
{
    if (!m_done) {
        return;
    }
    onMain(this, [this, done = std::exchange(m_done, nullptr), error] {
        deleteLater();
        done(error);
    });
}

} // namespace brevok
