// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/ControlService.h"

#include "control/PackageCalls.h"
#include "control/SettingsDocument.h"
#include "control/StatusDocument.h"
#include "control/TargetCalls.h"
#include "ControlAdaptor.h"
#include "foundation/Log.h"
#include "helper/BrevokInstaller.h"
#include "install/Converger.h"
#include "platform/StorageWatch.h"
#include "reporting/BrevokUsageReporter.h"
#include "reporting/BugReporter.h"
#include "service/BrevokSession.h"

#include <QDateTime>
#include <QDBusError>
#include <QJsonDocument>
#include <QPointer>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr auto objectPath = "/com/tolvane/brevok/Control";

QString compactText(const QJsonObject &document)
{
    return QString::fromUtf8(QJsonDocument(document).toJson(QJsonDocument::Compact));
}

} // namespace

ControlService::ControlService(QObject *parent)
    : QObject(parent)
{
    new ControlAdaptor(this); // owned by this object, as adaptors are
}

ControlService::~ControlService() = default;

void ControlService::publish(QDBusConnection bus)
{
    if (!bus.isConnected()) {
        logLine(u"No session bus: this copy cannot be controlled from outside. %1"_s.arg(
            bus.lastError().message()));
        return;
    }
    bus.registerObject(QString::fromLatin1(objectPath), this);
}

void ControlService::setCollaborators(Collaborators collaborators)
{
    m_with.emplace(std::move(collaborators));
    m_packages = new PackageCalls(
        m_with->plugins, m_with->packages, m_with->flow, m_with->updates, m_with->state, this);
    m_targets = new TargetCalls(m_with->targets, m_with->state, this);
    connect(&m_with->flow, &InstallFlow::progress, this, &ControlService::Progress);
}

ControlCall ControlService::currentCall()
{
    setDelayedReply(true);
    ++m_unanswered;
    return {connection(), message(), [service = QPointer<ControlService>(this)] {
                if (service && --service->m_unanswered == 0) {
                    Q_EMIT service->becameIdle();
                }
            }};
}

void ControlService::refuse(const QString &reason)
{
    sendErrorReply(QString::fromLatin1(refusedError), reason);
}

bool ControlService::refusedTooEarly()
{
    if (!m_with) {
        refuse(u"Tolvane Brevok is still starting; try again."_s);
    }
    return !m_with;
}

QString ControlService::Status()
{
    if (refusedTooEarly()) {
        return {};
    }
    const BrevokSession &session = m_with->session;
    const QList<Record> packages = m_with->packages.packageRecords();
    const auto &statuses = m_with->packages.packagesStatus();
    QJsonObject document{
        {u"version"_s, QStringLiteral(BREVOK_VERSION)},
        {u"session"_s,
            QJsonObject{{u"signedIn"_s, !session.sessionId().isEmpty()}, {u"email"_s, session.orlecId()},
                {u"updating"_s, session.isUpdating()}}},
        {u"updates"_s, m_with->packages.waitingPackages().size()},
        {u"packages"_s, packagesDocument(packages, statuses, m_with->flow.lastFailures().all())},
        {u"targets"_s, targetsDocument(m_with->targets.allRecords())},
        {u"installer"_s,
            QJsonObject{{u"helper"_s, m_with->helperIsUsed()}, {u"version"_s, installerInterfaceVersion}}},
    };
    if (const QDateTime checked = std::min(m_with->plugins.lastUpdate(), m_with->packages.lastUpdate());
        checked.isValid()) {
        document.insert(u"lastCheck"_s, checked.toUTC().toString(Qt::ISODate));
    }
    if (!m_with->packages.isSettled()) {
        document.insert(u"calculating"_s, true);
    }
    if (const QString problem = m_with->storage.problem(); !problem.isEmpty()) {
        document.insert(u"warnings"_s, QJsonArray{storageWarning(problem)});
    }
    return compactText(document);
}

QStringList ControlService::sessionAction(const std::function<void()> &start)
{
    if (m_with->session.isUpdating()) {
        refuse(u"A request of the account is under way; try again when it has ended."_s);
        return {};
    }
    connect(
        &m_with->session, &BrevokSession::actionFinished, this,
        [this, call = currentCall()](int, bool ok, const QString &text) {
            call.answerWhenStored(m_with->state, ok ? QStringList() : QStringList{text});
        },
        static_cast<Qt::ConnectionType>(Qt::SingleShotConnection | Qt::QueuedConnection));
    start();
    return {};
}

QStringList ControlService::SignIn(const QString &email, const QString &password)
{
    if (refusedTooEarly()) {
        return {};
    }
    if (email.isEmpty() || password.isEmpty()) {
        refuse(u"An email address and a password are needed."_s);
        return {};
    }
    return sessionAction([&] { m_with->session.signinWithID(email, password); });
}

QStringList ControlService::SignOut()
{
    if (refusedTooEarly()) {
        return {};
    }
    if (m_with->session.sessionId().isEmpty()) {
        currentCall().answerWhenStored(m_with->state, {}); // which an earlier call may have failed at
        return {};
    }
    return sessionAction([&] { m_with->session.signout(); });
}

QStringList ControlService::Check()
{
    if (!refusedTooEarly()) {
        m_packages->check(currentCall());
    }
    return {};
}

QStringList ControlService::Install(const QStringList &prefixes, QString & /*outcome*/)
{
    if (!refusedTooEarly()) {
        m_packages->install(currentCall(), prefixes);
    }
    return {};
}

QStringList ControlService::UpdateAll(QString & /*outcome*/)
{
    if (!refusedTooEarly()) {
        m_packages->updateAll(currentCall());
    }
    return {};
}

QStringList ControlService::Remove(const QStringList &prefixes, QString & /*outcome*/)
{
    if (!refusedTooEarly()) {
        m_packages->remove(currentCall(), prefixes);
    }
    return {};
}

QStringList ControlService::Converge(bool foreseen, QString & /*document*/)
{
    if (!refusedTooEarly()) {
        m_with->converger.run(foreseen, [call = currentCall()](const ConvergeOutcome &outcome) {
            call.answer(QVariantList{outcome.failureSentences(), compactText(convergeDocument(outcome))});
        });
    }
    return {};
}

void ControlService::Discard()
{
    if (!refusedTooEarly()) {
        m_packages->discard(currentCall());
    }
}

QString ControlService::Targets()
{
    if (refusedTooEarly()) {
        return {};
    }
    return compactText({{u"targets"_s, targetsDocument(m_with->targets.allRecords())}});
}

void ControlService::AddTarget(const QString &path, const QString &type, const QString &version)
{
    if (!refusedTooEarly()) {
        m_targets->add(currentCall(), path, type, version);
    }
}

void ControlService::RemoveTarget(const QString &path)
{
    if (!refusedTooEarly()) {
        m_targets->remove(currentCall(), path);
    }
}

void ControlService::SetTargetEnabled(const QString &path, bool enabled)
{
    if (!refusedTooEarly()) {
        m_targets->setEnabled(currentCall(), path, enabled);
    }
}

QString ControlService::Settings()
{
    if (refusedTooEarly()) {
        return {};
    }
    return compactText(settingsDocument(m_with->settings));
}

QString ControlService::Setting(const QString &key)
{
    if (refusedTooEarly()) {
        return {};
    }
    const QJsonValue value = settingValue(m_with->settings, key);
    if (value.isUndefined()) {
        refuse(noSuchSetting(key));
        return {};
    }
    return compactText({{key, value}});
}

void ControlService::SetSetting(const QString &key, const QString &value)
{
    if (refusedTooEarly()) {
        return;
    }
    const ControlCall call = currentCall();
    const auto tell = [call](const std::optional<BrevokError> &error) {
        error ? call.refuse(error->description) : call.answer();
    };
    if (const std::optional<QString> reason =
            setSettingFromText(m_with->settings, key, value, {this, tell})) {
        call.refuse(*reason);
    }
}

QStringList ControlService::Report(const QString &email, const QString &note)
{
    if (refusedTooEarly()) {
        return {};
    }
    m_with->bugReporter.report({
        .email = email,
        .note = note,
        .context = this,
        .stage = {},
        .done =
            [call = currentCall()](const ReportOutcome &outcome) {
                call.answer(outcome.sent ? QStringList() : QStringList{outcome.sentence()});
            },
    });
    return {};
}

QString ControlService::ReportBody(const QString &email, const QString &note)
{
    if (!refusedTooEarly()) {
        m_with->bugReporter.reportBody(email, note, this,
            [call = currentCall()](const QByteArray &body) { call.answer(QString::fromUtf8(body)); });
    }
    return {};
}

QString ControlService::UsageBody()
{
    if (refusedTooEarly()) {
        return {};
    }
    m_with->usageReporter.reportBody(this, [call = currentCall()](const std::optional<QByteArray> &body) {
        if (body) {
            call.answer(QString::fromUtf8(*body));
        } else {
            call.refuse(u"No target application is known, so no usage report is sent."_s);
        }
    });
    return {};
}

void ControlService::OpenPanel()
{
    if (!refusedTooEarly()) {
        Q_EMIT openPanelRequested();
    }
}

void ControlService::Quit()
{
    Q_EMIT quitRequested();
}

} // namespace brevok
