// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "client/CommandRunner.h"

#include "client/Tables.h"
#include "ControlProxy.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QTimer>

#include <cstdio>
#include <limits>

namespace brevok::client {

using namespace Qt::StringLiterals;
using Verb = Command::Verb;
using ControlProxy = ComTolvaneBrevokControl1Interface;

namespace {

constexpr auto busName = "com.tolvane.brevok";
constexpr auto objectPath = "/com/tolvane/brevok/Control";
constexpr auto refusedError = "com.tolvane.brevok.Error.Refused";

void print(std::FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
    std::fflush(stream);
}

QJsonObject documentOf(const QDBusMessage &reply)
{
    return QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8()).object();
}

bool isQuestion(Verb verb)
{
    return verb == Verb::Status || verb == Verb::Targets || verb == Verb::Settings
        || verb == Verb::GetSetting;
}

QString megabytes(qint64 bytes)
{
    return QString::number(static_cast<double>(bytes) / 1e6, 'f', 1);
}

} // namespace

CommandRunner::CommandRunner(
    Command command, std::function<QString()> password, bool showProgress, QObject *parent)
    : QObject(parent)
    , m_command(std::move(command))
    , m_password(std::move(password))
    , m_showProgress(showProgress)
    , m_timeout(new QTimer(this))
{
    m_timeout->setSingleShot(true);
    connect(m_timeout, &QTimer::timeout, this, [this] {
        end(isQuestion(m_command.verb) ? ExitStatus::Unreachable : ExitStatus::Failed,
            u"no answer within %1 seconds"_s.arg(m_command.timeoutSeconds));
    });
}

CommandRunner::~CommandRunner() = default;

void CommandRunner::start()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        end(ExitStatus::Unreachable, u"there is no session bus: %1"_s.arg(bus.lastError().message()));
        return;
    }
    if (m_showProgress) {
        bus.connect(QString::fromLatin1(busName), QString::fromLatin1(objectPath),
            u"com.tolvane.brevok.Control1"_s, u"Progress"_s, this,
            SLOT(showProgress(QString, QString, qint64, qint64)));
    }
    auto *watcher = new QDBusPendingCallWatcher(call(), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] { handle(watcher->reply()); });
    m_timeout->start(std::chrono::seconds(m_command.timeoutSeconds));
}

QDBusPendingCall CommandRunner::call()
{
    ControlProxy proxy(
        QString::fromLatin1(busName), QString::fromLatin1(objectPath), QDBusConnection::sessionBus());
    proxy.setTimeout(std::numeric_limits<int>::max()); // ours is the only clock
    const QStringList &arguments = m_command.arguments;
    switch (m_command.verb) {
    case Verb::Status:
        return proxy.Status();
    case Verb::SignIn:
        return proxy.SignIn(arguments.first(), m_password());
    case Verb::SignOut:
        return proxy.SignOut();
    case Verb::Check:
        return proxy.Check();
    case Verb::Install:
    case Verb::Update:
        return proxy.Install(arguments);
    case Verb::UpdateAll:
        return proxy.UpdateAll();
    case Verb::Remove:
        return proxy.Remove(arguments);
    case Verb::Targets:
        return proxy.Targets();
    case Verb::Settings:
        return proxy.Settings();
    case Verb::GetSetting:
        return proxy.Setting(arguments[0]);
    case Verb::SetSetting:
        return proxy.SetSetting(arguments[0], arguments[1]);
    case Verb::Discard:
        return proxy.Discard();
    case Verb::Report:
        return proxy.Report(m_command.email, m_command.note);
    case Verb::ShowReport:
        return proxy.ReportBody(m_command.email, m_command.note);
    case Verb::ShowUsage:
        return proxy.UsageBody();
    case Verb::OpenPanel:
        return proxy.OpenPanel();
    case Verb::Quit:
        return proxy.Quit();
    default:
        return callForTarget();
    }
}

QDBusPendingCall CommandRunner::callForTarget()
{
    ControlProxy proxy(
        QString::fromLatin1(busName), QString::fromLatin1(objectPath), QDBusConnection::sessionBus());
    const QString path = m_command.arguments.value(0);
    switch (m_command.verb) {
    case Verb::AddTarget:
        return proxy.AddTarget(path, m_command.type, m_command.version);
    case Verb::RemoveTarget:
        return proxy.RemoveTarget(path);
    default:
        return proxy.SetTargetEnabled(path, m_command.verb == Verb::EnableTarget);
    }
}

void CommandRunner::handle(const QDBusMessage &reply)
{
    if (m_progressShown) {
        print(stderr, u"\n"_s);
    }
    if (reply.type() == QDBusMessage::ErrorMessage) {
        handleError(reply);
    } else {
        printResult(reply);
    }
}

void CommandRunner::handleError(const QDBusMessage &error)
{
    if (error.errorName() == QLatin1StringView(refusedError)) {
        end(ExitStatus::Failed, error.errorMessage());
        return;
    }
    // A copy that quits may be gone from the bus before its answer is.
    if (m_command.verb == Verb::Quit && error.errorName() == u"org.freedesktop.DBus.Error.NoReply") {
        end(ExitStatus::Done);
        return;
    }
    end(ExitStatus::Unreachable, u"Tolvane Brevok cannot be reached: %1"_s.arg(error.errorMessage()));
}

void CommandRunner::printResult(const QDBusMessage &reply)
{
    const QJsonObject document = documentOf(reply);
    switch (m_command.verb) {
    case Verb::Status:
        m_command.json ? printDocument(document) : print(stdout, statusText(document));
        break;
    case Verb::Targets:
        m_command.json ? printDocument(document)
                       : print(stdout, targetsText(document[u"targets"_s].toArray()));
        break;
    case Verb::Settings:
        m_command.json ? printDocument(document) : print(stdout, settingsText(document));
        break;
    case Verb::GetSetting:
        m_command.json ? printDocument(document)
                       : print(stdout, settingText(document[m_command.arguments.first()]) + u'\n');
        break;
    case Verb::ShowReport:
    case Verb::ShowUsage: // a document of its own, byte for byte as it would be sent
        print(stdout, reply.arguments().value(0).toString() + u'\n');
        break;
    default:
        printFailures(reply.arguments().value(0).toStringList());
        return;
    }
    end(ExitStatus::Done);
}

void CommandRunner::printFailures(const QStringList &failures)
{
    if (m_command.json) {
        printDocument({{u"ok"_s, failures.isEmpty()}, {u"failures"_s, QJsonArray::fromStringList(failures)}});
    }
    for (const QString &failure : failures) {
        print(stderr, u"brevokctl: %1\n"_s.arg(failure));
    }
    end(failures.isEmpty() ? ExitStatus::Done : ExitStatus::Failed);
}

void CommandRunner::printDocument(const QJsonObject &document)
{
    print(stdout, QString::fromUtf8(QJsonDocument(document).toJson(QJsonDocument::Compact)) + u'\n');
}

void CommandRunner::showProgress(const QString &, const QString &plugin, qint64 done, qint64 expected)
{
    m_progressShown = true;
    print(stderr, u"\r\x1b[K%1: %2 of %3 MB"_s.arg(plugin, megabytes(done), megabytes(expected)));
}

void CommandRunner::end(ExitStatus status, const QString &message)
{
    if (m_ended) {
        return;
    }
    m_ended = true;
    if (!message.isEmpty()) {
        print(stderr, u"brevokctl: %1\n"_s.arg(message));
        // With --json the answer is a document whatever happened.
        if (m_command.json) {
            printDocument({{u"ok"_s, false}, {u"failures"_s, QJsonArray{message}}});
        }
    }
    Q_EMIT finished(status);
}

} // namespace brevok::client
