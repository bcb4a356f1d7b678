// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "client/CommandRunner.h"

#include "client/Metrics.h"
#include "client/Output.h"
#include "client/Tables.h"
#include "ControlProxy.h"
#include "foundation/UntrustedText.h"

#include <QDBusConnection>
#include <QDBusPendingCallWatcher>
#include <QJsonDocument>
#include <QTimer>

#include <limits>

namespace brevok::client {

using namespace Qt::StringLiterals;
using Verb = Command::Verb;
using ControlProxy = ComTolvaneBrevokControl1Interface;

namespace {

constexpr auto busName = "com.tolvane.brevok";
constexpr auto objectPath = "/com/tolvane/brevok/Control";
constexpr int askAgainMs = 100;
constexpr int mostTimesAsked = 100;
constexpr auto refusedError = "com.tolvane.brevok.Error.Refused";

QJsonObject documentOf(const QDBusMessage &reply)
{
    return QJsonDocument::fromJson(reply.arguments().value(0).toString().toUtf8()).object();
}

bool isQuestion(Verb verb)
{
    return verb == Verb::Status || verb == Verb::Metrics || verb == Verb::Targets || verb == Verb::Settings
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
        end({u"no answer within %1 seconds"_s.arg(m_command.timeoutSeconds)},
            isQuestion(m_command.verb) ? ExitStatus::Unreachable : ExitStatus::Failed);
    });
}

CommandRunner::~CommandRunner() = default;

void CommandRunner::start()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        end({u"there is no session bus: %1"_s.arg(bus.lastError().message())}, ExitStatus::Unreachable);
        return;
    }
    if (m_showProgress) {
        bus.connect(QString::fromLatin1(busName), QString::fromLatin1(objectPath),
            u"com.tolvane.brevok.Control1"_s, u"Progress"_s, this,
            SLOT(showProgress(QString, QString, qint64, qint64)));
    }
    ask();
    m_timeout->start(std::chrono::seconds(m_command.timeoutSeconds));
}

void CommandRunner::ask()
{
    auto *watcher = new QDBusPendingCallWatcher(call(), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        handle(watcher->reply());
        watcher->deleteLater();
    });
}

QDBusPendingCall CommandRunner::call()
{
    ControlProxy proxy(
        QString::fromLatin1(busName), QString::fromLatin1(objectPath), QDBusConnection::sessionBus());
    proxy.setTimeout(std::numeric_limits<int>::max()); // our own time-out is the one that counts
    const QStringList &arguments = m_command.arguments;
    switch (m_command.verb) {
    case Verb::Status:
    case Verb::Metrics:
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
    case Verb::AddTarget:
        return proxy.AddTarget(arguments[0], m_command.type, m_command.version);
    case Verb::RemoveTarget:
        return proxy.RemoveTarget(arguments[0]);
    case Verb::EnableTarget:
    case Verb::DisableTarget:
        return proxy.SetTargetEnabled(arguments[0], m_command.verb == Verb::EnableTarget);
    case Verb::Settings:
        return proxy.Settings();
    case Verb::GetSetting:
        return proxy.Setting(arguments[0]);
    case Verb::SetSetting:
        return proxy.SetSetting(arguments[0], arguments[1]);
    case Verb::Converge:
        return proxy.Converge(m_command.dryRun);
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
    default:
        return proxy.Quit();
    }
}

void CommandRunner::handle(const QDBusMessage &reply)
{
    if (m_progressShown) {
        printNote(u"\n"_s);
    }
    if (reply.type() == QDBusMessage::ErrorMessage) {
        handleError(reply);
    } else {
        handleResult(reply);
    }
}

void CommandRunner::handleError(const QDBusMessage &error)
{
    if (error.errorName() == QLatin1StringView(refusedError)) {
        end({error.errorMessage()});
        return;
    }
    // A copy that quits may be gone from the bus before its answer is.
    if (m_command.verb == Verb::Quit && error.errorName() == u"org.freedesktop.DBus.Error.NoReply") {
        end({});
        return;
    }
    end({u"Tolvane Brevok cannot be reached: %1"_s.arg(error.errorMessage())}, ExitStatus::Unreachable);
}

void CommandRunner::handleResult(const QDBusMessage &reply)
{
    const QJsonObject document = documentOf(reply);
    const bool json = m_command.json;
    switch (m_command.verb) {
    case Verb::Status:
        endWith(json ? documentText(document) : statusText(document));
        break;
    case Verb::Targets:
        endWith(json ? documentText(document) : targetsText(document[u"targets"_s].toArray()));
        break;
    case Verb::Settings:
        endWith(json ? documentText(document) : settingsText(document));
        break;
    case Verb::GetSetting:
        endWith(json ? documentText(document) : settingText(document[m_command.arguments.first()]) + u'\n');
        break;
    case Verb::Converge:
        handleConverged(reply);
        break;
    case Verb::Metrics:
        // A program that has just started would count no update yet.
        if (document[u"calculating"_s].toBool() && ++m_timesAsked <= mostTimesAsked) {
            QTimer::singleShot(askAgainMs, this, &CommandRunner::ask);
        } else {
            handleMetrics(metricsText(document, userName()));
        }
        break;
    case Verb::ShowReport:
    case Verb::ShowUsage: // a document of its own
        endWith(documentText(reply.arguments().value(0).toString()));
        break;
    default:
        if (reply.arguments().size() > 1) {
            m_outcome = QJsonDocument::fromJson(reply.arguments().at(1).toString().toUtf8()).array();
        }
        end(reply.arguments().value(0).toStringList());
    }
}

void CommandRunner::handleConverged(const QDBusMessage &reply)
{
    const QStringList failures = reply.arguments().value(0).toStringList();
    const QString document = reply.arguments().value(1).toString();
    for (const QString &failure : failures) {
        printComplaint(failure);
    }
    const QString text = m_command.json ? documentText(document)
                                        : convergeText(QJsonDocument::fromJson(document.toUtf8()).object());
    endWith(text, failures.isEmpty() ? ExitStatus::Done : ExitStatus::Failed);
}

void CommandRunner::handleMetrics(const QString &text)
{
    if (m_command.file.isEmpty()) {
        endWith(m_command.json ? documentText(QJsonObject{{u"metrics"_s, text}}) : text);
        return;
    }
    const QString problem = writeMetrics(m_command.file, userName(), text);
    end(problem.isEmpty() ? QStringList() : QStringList{problem});
}

void CommandRunner::showProgress(const QString &, const QString &plugin, qint64 done, qint64 expected)
{
    m_progressShown = true;
    constexpr qsizetype longestName = 60;
    printNote(
        u"\r\x1b[K%1: %2 of %3 MB"_s.arg(oneLine(plugin, longestName), megabytes(done), megabytes(expected)));
}

void CommandRunner::endWith(const QString &result, ExitStatus status)
{
    if (!m_ended) {
        m_ended = true;
        Q_EMIT finished(printResult(result) ? status : ExitStatus::Failed);
    }
}

void CommandRunner::end(const QStringList &failures, ExitStatus failed)
{
    if (m_ended) {
        return;
    }
    m_ended = true;
    for (const QString &failure : failures) {
        printComplaint(failure);
    }
    const bool printed = !m_command.json || printResult(failuresText(failures, m_outcome));
    Q_EMIT finished(!failures.isEmpty() ? failed : printed ? ExitStatus::Done : ExitStatus::Failed);
}

} // namespace brevok::client
