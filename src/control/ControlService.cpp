// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/ControlService.h"

#include "control/StatusDocument.h"
#include "ControlAdaptor.h"
#include "foundation/Log.h"
#include "helper/BrevokInstaller.h"
#include "service/BrevokSession.h"
#include "targets/TargetJudgement.h"

#include <QDBusConnection>
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

QStringList sentencesOf(const InstallOutcome &outcome)
{
    QStringList sentences;
    for (const BrevokError &failure : outcome.failures) {
        sentences.append(failure.description);
    }
    return sentences;
}

// Calls `done` once, after `count` calls of the function it returns.
std::function<void(const QStringList &)> gather(
    qsizetype count, std::function<void(const QStringList &)> done)
{
    struct State {
        qsizetype open;
        QStringList failures;
    };
    auto state = std::make_shared<State>(State{count, {}});
    return [state, done = std::move(done)](const QStringList &failures) {
        state->failures += failures;
        if (--state->open == 0) {
            done(state->failures);
        }
    };
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
    connect(&m_with->flow, &InstallFlow::progress, this, &ControlService::Progress);
}

std::function<void(const QDBusMessage &)> ControlService::sendLater()
{
    setDelayedReply(true);
    ++m_unanswered;
    return [bus = connection(), service = QPointer<ControlService>(this)](const QDBusMessage &answer) {
        bus.send(answer);
        if (service && --service->m_unanswered == 0) {
            Q_EMIT service->becameIdle();
        }
    };
}

std::function<void(const QStringList &)> ControlService::answerLater()
{
    return [send = sendLater(), call = message()](const QStringList &failures) {
        send(call.createReply(QVariant(failures)));
    };
}

std::function<void(const QStringList &)> ControlService::answerWhenStored()
{
    return [this, answer = answerLater()](const QStringList &failures) {
        m_with->state.commit({}, this, [answer, failures](const auto &error) {
            answer(error ? failures + QStringList{error->description} : failures);
        });
    };
}

void ControlService::answerWhenSettled(
    std::function<void(const QStringList &)> answer, const QStringList &failures)
{
    const BrevokPackages &packages = m_with->packages;
    if (!packages.updating() && !packages.needUpdate()) {
        answer(failures);
        return;
    }
    connect(
        &packages, &BrevokPackages::statusesSettled, this,
        [answer = std::move(answer), failures] { answer(failures); }, Qt::SingleShotConnection);
}

void ControlService::confirmWhenStored()
{
    setDelayedReply(true);
    confirmWhenStored(connection(), message());
}

void ControlService::confirmWhenStored(const QDBusConnection &bus, const QDBusMessage &call)
{
    m_with->state.commit({}, this, [bus, call](const auto &error) {
        bus.send(error ? call.createErrorReply(QString::fromLatin1(refusedError), error->description)
                       : call.createReply());
    });
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

// The question is about the queues that these calls would fill, and comes before every list.
bool ControlService::refusedBeforeAnswer()
{
    if (refusedTooEarly()) {
        return true;
    }
    if (m_with->plugins.asksAboutUnfinishedActions()) {
        refuse(u"The question about unfinished actions waits for its answer; 'brevokctl discard' discards "
               "them."_s);
        return true;
    }
    return false;
}

bool ControlService::refusedUnknown(const QStringList &prefixes)
{
    if (refusedBeforeAnswer()) {
        return true;
    }
    if (prefixes.isEmpty()) {
        refuse(u"No package is named."_s);
        return true;
    }
    for (const QString &prefix : prefixes) {
        if (m_with->packages.packagesWithPrefix(prefix).isEmpty()) {
            refuse(u"No package has the prefix '%1'."_s.arg(prefix));
            return true;
        }
    }
    return false;
}

QString ControlService::Status()
{
    if (refusedTooEarly()) {
        return {};
    }
    const BrevokSession &session = m_with->session;
    const QList<Record> packages = m_with->packages.packageRecords();
    const auto &statuses = m_with->packages.packagesStatus();
    return compactText({
        {u"session"_s,
            QJsonObject{{u"signedIn"_s, !session.sessionId().isEmpty()}, {u"email"_s, session.orlecId()},
                {u"updating"_s, session.isUpdating()}}},
        {u"updates"_s,
            std::count_if(packages.cbegin(), packages.cend(),
                [this](const Record &package) { return m_with->packages.waits(package); })},
        {u"packages"_s, packagesDocument(packages, statuses)},
        {u"targets"_s, targetsDocument(m_with->targets.allRecords())},
        {u"installer"_s,
            QJsonObject{{u"helper"_s, m_with->helperIsUsed()}, {u"version"_s, installerInterfaceVersion}}},
    });
}

QStringList ControlService::sessionAction(const std::function<void()> &start)
{
    if (refusedTooEarly()) {
        return {};
    }
    if (m_with->session.isUpdating()) {
        refuse(u"A request of the account is under way; try again when it has ended."_s);
        return {};
    }
    const auto answer = answerWhenStored();
    connect(
        &m_with->session, &BrevokSession::actionFinished, this,
        [answer](int, bool ok, const QString &text) { answer(ok ? QStringList() : QStringList{text}); },
        static_cast<Qt::ConnectionType>(Qt::SingleShotConnection | Qt::QueuedConnection));
    start();
    return {};
}

QStringList ControlService::SignIn(const QString &email, const QString &password)
{
    if (email.isEmpty() || password.isEmpty()) {
        refuse(u"An e-mail address and a password are needed."_s);
        return {};
    }
    return sessionAction([&] { m_with->session.signinWithID(email, password); });
}

QStringList ControlService::SignOut()
{
    if (refusedTooEarly() || m_with->session.sessionId().isEmpty()) {
        return {};
    }
    return sessionAction([&] { m_with->session.signout(); });
}

QStringList ControlService::Check()
{
    if (refusedBeforeAnswer()) {
        return {};
    }
    const auto bothEnded = gather(2, [this, answer = answerWhenStored()](const QStringList &failures) {
        answerWhenSettled(answer, failures);
    });
    const auto ended = [bothEnded](const QString &failure) {
        return [bothEnded, failure](bool ok) {
            bothEnded(ok ? QStringList() : QStringList{failure});
        };
    };
    m_with->plugins.checkForUpdates(ended(u"The list of plug-ins could not be read."_s));
    m_with->packages.checkForUpdates(false, ended(u"The list of packages could not be read."_s));
    return {};
}

void ControlService::runForEach(const QStringList &prefixes, bool remove)
{
    const auto ended =
        gather(prefixes.size(), [this, answer = answerWhenStored()](const QStringList &failures) {
            answerWhenSettled(answer, failures);
        });
    const auto done = [ended](const InstallOutcome &outcome) {
        ended(sentencesOf(outcome));
    };
    for (const QString &prefix : prefixes) {
        if (remove) {
            m_with->flow.uninstallWithPrefix(prefix, done);
        } else {
            m_with->flow.installWithPrefix(prefix, false, done);
        }
    }
}

QStringList ControlService::Install(const QStringList &prefixes)
{
    if (!refusedUnknown(prefixes)) {
        runForEach(prefixes, false);
    }
    return {};
}

QStringList ControlService::UpdateAll()
{
    if (refusedBeforeAnswer()) {
        return {};
    }
    QStringList prefixes;
    const QList<Record> packages = m_with->packages.packageRecords();
    for (const Record &package : packages) {
        if (m_with->packages.waits(package)) {
            prefixes.append(package[PackageKeys::prefix].toString());
        }
    }
    prefixes.removeDuplicates();
    if (!prefixes.isEmpty()) {
        runForEach(prefixes, false);
    }
    return {};
}

QStringList ControlService::Remove(const QStringList &prefixes)
{
    if (!refusedUnknown(prefixes)) {
        runForEach(prefixes, true);
    }
    return {};
}

void ControlService::Discard()
{
    if (refusedTooEarly()) {
        return;
    }
    if (m_with->flow.isBusy()) {
        refuse(u"An install or a removal is under way; try again when it has ended."_s);
        return;
    }
    m_with->plugins.discardActions();
    confirmWhenStored();
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
    if (refusedTooEarly()) {
        return;
    }
    if (type != u"InDesign" && type != u"InCopy") {
        refuse(u"'%1' is no type: InDesign and InCopy are."_s.arg(type));
        return;
    }
    answerAfterLook(path, [this, path, type, version](const std::optional<FolderLook> &look) {
        std::optional<QString> reason = whyNoTarget(path, version, look);
        if (!reason) {
            m_with->targets.insertTarget(path, type, version);
        }
        return reason;
    });
}

void ControlService::RemoveTarget(const QString &path)
{
    changeTarget(path, [this](const QString &known) { m_with->targets.removeTarget(known); });
}

void ControlService::SetTargetEnabled(const QString &path, bool enabled)
{
    changeTarget(path, [this, enabled](const QString &known) { m_with->targets.setTarget(known, enabled); });
}

void ControlService::changeTarget(
    const QString &path, const std::function<void(const QString &known)> &change)
{
    if (refusedTooEarly()) {
        return;
    }
    if (const std::optional<QString> known = m_with->targets.recordPath(path)) {
        change(*known);
        confirmWhenStored();
        return;
    }
    answerAfterLook(path, [this, path, change](const auto &look) -> std::optional<QString> {
        if (const std::optional<QString> known = m_with->targets.recordPath(path)) {
            change(*known);
            return std::nullopt;
        }
        return look ? u"There is no target '%1'."_s.arg(path) : doesNotAnswer(path);
    });
}

void ControlService::answerAfterLook(const QString &path,
    const std::function<std::optional<QString>(const std::optional<FolderLook> &look)> &act)
{
    setDelayedReply(true);
    m_with->targets.lookAt(
        path, this, [this, act, bus = connection(), call = message()](const std::optional<FolderLook> &look) {
            if (const std::optional<QString> refused = act(look)) {
                bus.send(call.createErrorReply(QString::fromLatin1(refusedError), *refused));
            } else {
                confirmWhenStored(bus, call);
            }
        });
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
    if (const std::optional<QString> reason = setSettingFromText(m_with->settings, key, value)) {
        refuse(*reason);
    }
}

void ControlService::OpenPanel()
{
    if (refusedTooEarly()) {
        return;
    }
    Q_EMIT openPanelRequested();
}

void ControlService::Quit()
{
    Q_EMIT quitRequested();
}

} // namespace brevok
