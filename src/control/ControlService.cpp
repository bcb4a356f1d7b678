// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/ControlService.h"

#include "control/StatusDocument.h"
#include "ControlAdaptor.h"
#include "foundation/Log.h"
#include "helper/BrevokInstaller.h"
#include "service/BrevokSession.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QJsonDocument>

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

ControlService::Publication ControlService::publish(const QString &busName)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        logLine(u"No session bus: this copy cannot be controlled from outside. %1"_s.arg(
            bus.lastError().message()));
        return Publication::NoBus;
    }
    bus.registerObject(QString::fromLatin1(objectPath), this);
    return bus.registerService(busName) ? Publication::Published : Publication::NameTaken;
}

void ControlService::setCollaborators(Collaborators collaborators)
{
    m_with.emplace(std::move(collaborators));
    connect(&m_with->flow, &InstallFlow::progress, this, &ControlService::Progress);
}

std::function<void(const QStringList &)> ControlService::answerLater()
{
    setDelayedReply(true);
    return [bus = connection(), call = message()](const QStringList &failures) {
        bus.send(call.createReply(QVariant(failures)));
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
    m_with->state.commit({}, this, [bus = connection(), call = message()](const auto &error) {
        bus.send(error ? call.createErrorReply(QString::fromLatin1(refusedError), error->description)
                       : call.createReply());
    });
}

void ControlService::refuse(const QString &reason)
{
    sendErrorReply(QString::fromLatin1(refusedError), reason);
}

// While start-up waits for an answer of the user, calls arrive before there is anything to ask.
bool ControlService::refusedTooEarly()
{
    if (!m_with) {
        refuse(u"Tolvane Brevok is still starting; try again when its question has been answered."_s);
    }
    return !m_with;
}

bool ControlService::refusedUnknown(const QStringList &prefixes)
{
    if (refusedTooEarly()) {
        return true;
    }
    const QList<Record> packages = m_with->packages.packageRecords();
    if (prefixes.isEmpty()) {
        refuse(u"No package is named."_s);
        return true;
    }
    for (const QString &prefix : prefixes) {
        const bool known = std::any_of(packages.cbegin(), packages.cend(), [&](const Record &package) {
            return !prefix.isEmpty() && package[PackageKeys::prefix].toString() == prefix;
        });
        if (!known) {
            refuse(u"No package has the prefix '%1'."_s.arg(prefix));
            return true;
        }
    }
    return false;
}

bool ControlService::refusedUnknownTarget(const QString &path)
{
    if (refusedTooEarly()) {
        return true;
    }
    if (m_with->targets.allRecords().contains(path)) {
        return false;
    }
    refuse(u"There is no target '%1'."_s.arg(path));
    return true;
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
        {u"updates"_s, waitingUpdates(packages, statuses)},
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
    if (refusedTooEarly()) {
        return {};
    }
    const auto settled = [this, answer = answerWhenStored()](const QStringList &failures) {
        answerWhenSettled(answer, failures);
    };
    const auto ended = gather(2, settled);
    const auto listen = [&](auto *sender, auto signal, const QString &failure) {
        connect(
            sender, signal, this,
            [ended, failure](bool ok) { ended(ok ? QStringList() : QStringList{failure}); },
            static_cast<Qt::ConnectionType>(Qt::SingleShotConnection | Qt::QueuedConnection));
    };
    listen(&m_with->plugins, &BrevokPlugins::checkFinished, u"The list of plug-ins could not be read."_s);
    listen(&m_with->packages, &BrevokPackages::checkFinished, u"The list of packages could not be read."_s);
    m_with->plugins.checkForUpdates();
    m_with->packages.checkForUpdates(false);
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
    if (refusedTooEarly()) {
        return {};
    }
    const auto &statuses = m_with->packages.packagesStatus();
    QStringList prefixes;
    const QList<Record> packages = m_with->packages.packageRecords();
    for (const Record &package : packages) {
        const QString prefix = package[PackageKeys::prefix].toString();
        const PackageStatus status = statuses.value(prefix, PackageStatus::MissingData);
        const bool waits = status == PackageStatus::NotUpdated || status == PackageStatus::MixedNotUpdated;
        if (waits && !prefixes.contains(prefix)) {
            prefixes.append(prefix);
        }
    }
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
    if (!path.startsWith(u'/')) {
        refuse(u"'%1' is no absolute path."_s.arg(path));
    } else if (type != u"InDesign" && type != u"InCopy") {
        refuse(u"'%1' is no type: InDesign and InCopy are."_s.arg(type));
    } else if (leadingInteger(version) < 10 || QString::number(leadingInteger(version)) != version) {
        refuse(u"'%1' is no version: a host version times ten is, such as 140 for 14.0."_s.arg(version));
    } else {
        m_with->targets.insertTarget(path, type, version);
        confirmWhenStored();
    }
}

void ControlService::RemoveTarget(const QString &path)
{
    if (!refusedUnknownTarget(path)) {
        m_with->targets.removeTarget(path);
        confirmWhenStored();
    }
}

void ControlService::SetTargetEnabled(const QString &path, bool enabled)
{
    if (!refusedUnknownTarget(path)) {
        m_with->targets.setTarget(path, enabled);
        confirmWhenStored();
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
    if (refusedTooEarly()) {
        return;
    }
    Q_EMIT quitRequested();
}

} // namespace brevok
