// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/privileges/BusHelperTool.h"

#include "foundation/Log.h"
#include "foundation/Texts.h"
#include "platform/linux/privileges/BusInstaller.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QFileInfo>
#include <QStandardPaths>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr int activationTimeoutMs = 10'000;
constexpr int busTimeoutMs = 5000;
constexpr int orderTimeoutMs = 30'000;
constexpr int endTimeoutMs = 5000;

/// The system's bus, connected anew when it was restarted.
QDBusConnection systemBus()
{
    const QString name = u"brevok-helper"_s;
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
    if (!bus.isConnected()) {
        QDBusConnection::disconnectFromBus(name);
        bus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, name);
    }
    return bus;
}

QDBusMessage askBus(
    const QDBusConnection &bus, const QString &method, const QVariantList &arguments, int timeout)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, method);
    call.setArguments(arguments);
    return bus.call(call, QDBus::Block, timeout);
}

/// Whether the helper's name is root's. Starts the helper where the bus knows how to.
bool rootBearsTheName(const QDBusConnection &bus)
{
    const QDBusMessage started =
        askBus(bus, u"StartServiceByName"_s, {QString(BusInstaller::busName), 0U}, activationTimeoutMs);
    if (started.type() != QDBusMessage::ReplyMessage) {
        return false;
    }
    const QDBusMessage owner =
        askBus(bus, u"GetConnectionUnixUser"_s, {QString(BusInstaller::busName)}, busTimeoutMs);
    const bool isRoots =
        owner.type() == QDBusMessage::ReplyMessage && owner.arguments().value(0, 1U).toUInt() == 0;
    if (!isRoots) {
        logLine(u"The helper's name belongs to somebody who is not root."_s);
    }
    return isRoots;
}

QStringList pkexec()
{
    const QString program = QStandardPaths::findExecutable(u"pkexec"_s);
    // A question on a terminal would come from nowhere.
    return program.isEmpty() ? QStringList() : QStringList{program, u"--disable-internal-agent"_s};
}

} // namespace

BusHelperTool::BusHelperTool(QStringList setUp, QStringList authorizer)
    : m_setUp(std::move(setUp))
    , m_authorizer(std::move(authorizer))
{
}

BusHelperTool::BusHelperTool()
    : BusHelperTool({QCoreApplication::applicationDirPath() + u"/tolvane-brevok-helper"_s}, pkexec())
{
}

BusHelperTool::~BusHelperTool() = default;

HelperTool::Connection BusHelperTool::connection(bool mayAsk)
{
    const QDBusConnection bus = systemBus();
    Connection result;
    result.connected = bus.isConnected() && rootBearsTheName(bus);
    if (result.connected) {
        auto installer = std::make_shared<BusInstaller>(bus, mayAsk);
        if (installer->introspect(&result.installs)) {
            result.proxy = std::move(installer);
        }
    }
    return result;
}

int BusHelperTool::createAuthorization()
{
    constexpr int dismissed = 126;
    constexpr int notAuthorized = 127;
    if (m_authorizer.isEmpty() || !QFileInfo(m_setUp.constFirst()).isExecutable()
        || !systemBus().isConnected()) {
        return Unavailable;
    }
    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process->start(m_authorizer.constFirst(), m_authorizer.mid(1) + m_setUp + QStringList{u"--obey"_s});
    // The user has all the time there is.
    while (m_process->state() != QProcess::NotRunning && !m_process->canReadLine()) {
        m_process->waitForReadyRead(-1);
    }
    if (m_process->readLine().trimmed() == "ready") {
        return Granted;
    }
    m_process->waitForFinished(endTimeoutMs);
    const int status = m_process->exitStatus() == QProcess::NormalExit ? m_process->exitCode() : 0;
    m_process.reset();
    return status == dismissed ? Cancelled : status == notAuthorized ? Denied : Unavailable;
}

int BusHelperTool::makeExternalForm()
{
    return m_process ? Granted : Unavailable;
}

bool BusHelperTool::order(const QByteArray &command, std::optional<BrevokError> *error)
{
    QByteArray answer;
    if (m_process) {
        m_process->write(command + '\n');
        while (!m_process->canReadLine() && m_process->waitForReadyRead(orderTimeoutMs)) { }
        answer = m_process->readLine().trimmed();
    }
    if (answer == "done") {
        return true;
    }
    const QByteArray failed = "failed: ";
    *error = BrevokError{.domain = QString::fromLatin1(installerErrorDomain),
        .code = 1,
        .description = answer.startsWith(failed)
            ? QString::fromUtf8(answer.sliced(failed.size()))
            : Texts::tr("Setting up the privileged helper ended without a result.")};
    return false;
}

bool BusHelperTool::removeJob(std::optional<BrevokError> *error)
{
    const bool removed = order("remove", error);
    if (!removed) {
        m_process.reset();
    }
    return removed;
}

bool BusHelperTool::bless(std::optional<BrevokError> *error)
{
    bool blessed = order("install", error);
    if (m_process) {
        m_process->closeWriteChannel();
        m_process->waitForFinished(endTimeoutMs);
        m_process.reset();
    }
    if (blessed && !connection(false).connected) {
        *error = BrevokError{.domain = QString::fromLatin1(installerErrorDomain),
            .code = 1,
            .description = Texts::tr("The privileged helper was installed but does not start.")};
        blessed = false;
    }
    return blessed;
}

void BusHelperTool::clearLeftovers()
{
    BusInstaller::clearLeftovers();
}

} // namespace brevok
