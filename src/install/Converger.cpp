// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/Converger.h"

#include "foundation/Log.h"
#include "install/RemovalRule.h"
#include "platform/StateStore.h"
#include "service/BrevokSession.h"

namespace brevok {

using namespace Qt::StringLiterals;

Converger::Converger(Collaborators collaborators, QObject *parent)
    : QObject(parent)
    , m_with(std::move(collaborators))
{
}

Converger::~Converger() = default;

void Converger::run(bool foreseen, const Done &done)
{
    m_runs.append({.foreseen = foreseen, .done = done});
    if (m_runs.size() == 1) {
        next();
    }
}

void Converger::next()
{
    if (!m_runs.isEmpty()) {
        onMain(this, [this] { begin(); });
    }
}

void Converger::begin()
{
    m_outcome = {.foreseen = m_runs.constFirst().foreseen};
    m_steps.clear();
    if (m_with.session.sessionId().isEmpty()) {
        m_outcome.addFailure(u"Nobody is signed in; see 'brevokctl signin'. Nothing was changed."_s);
        finish();
        return;
    }
    inBackgroundThen(this, m_with.readWishes, [this](const Wishes &wishes) { wishesRead(wishes); });
}

void Converger::wishesRead(const Wishes &wishes)
{
    if (const auto *problem = std::get_if<QString>(&wishes)) {
        m_outcome.addFailure(
            u"The administrator's policy cannot be used. Nothing was changed. %1"_s.arg(*problem));
        finish();
        return;
    }
    m_wishes = std::get<PackageWishes>(wishes);
    if (!m_outcome.foreseen && m_with.plugins.hasUnfinishedActions() && !m_with.flow.isBusy()) {
        // A run that was cut short left them. They are planned again where they are still wanted.
        m_outcome.notes.append(
            u"Unfinished actions are discarded, and planned anew where they are wanted."_s);
        m_with.plugins.discardActions();
    }
    if (m_with.plugins.asksAboutUnfinishedActions()) {
        m_outcome.addFailure(u"The question about unfinished actions waits for its answer."_s);
        finish();
        return;
    }
    checkLists();
}

void Converger::checkLists()
{
    const auto open = std::make_shared<int>(2);
    const auto ended = [this, open](std::optional<BrevokError> &failure) {
        return [self = QPointer(this), open, &failure](const std::optional<BrevokError> &error) {
            if (self) {
                failure = error;
                if (--*open == 0) {
                    self->listsChecked();
                }
            }
        };
    };
    m_with.plugins.checkForUpdates(ended(m_pluginsFailure), ListRefresh::Voice::Quiet);
    m_with.packages.checkQuietly(ended(m_packagesFailure));
}

void Converger::listsChecked()
{
    const QString sentence = u"The list of %1 could not be read (%2); the one of the last time counts."_s;
    if (m_pluginsFailure) {
        m_outcome.addFailure(sentence.arg(u"plug-ins"_s, m_pluginsFailure->description));
    }
    if (m_packagesFailure) {
        m_outcome.addFailure(sentence.arg(u"packages"_s, m_packagesFailure->description));
    }
    if (m_with.session.sessionId().isEmpty()) {
        m_outcome.addFailure(u"The account was signed out meanwhile."_s);
    }
    m_with.packages.whenSettled(this, [this] { plan(); });
}

void Converger::plan()
{
    QMap<QString, PackageStatus> statuses;
    const QList<Record> packages = m_with.packages.packageRecords();
    for (const Record &package : packages) {
        const QString prefix = package.value(PackageKeys::prefix).toString();
        statuses.insert(prefix, m_with.packages.packagesStatus().value(prefix, PackageStatus::MissingData));
    }
    const ConvergePlan plan =
        planConvergence(m_wishes, m_wishes.autoUpdate.value_or(m_with.autoUpdate()), statuses);
    m_outcome.notes += plan.notes;
    for (const QString &prefix : plan.unknown) {
        m_outcome.addFailure(u"No package has the prefix '%1', which is required."_s.arg(prefix), prefix);
    }
    for (const QString &prefix : plan.waiting) {
        m_outcome.addWaiting(
            prefix, nameOf(prefix), u"update"_s, u"updates are not installed automatically"_s);
    }
    for (const QString &prefix : plan.removals) {
        m_steps.append({.prefix = prefix, .removes = true});
    }
    for (const QString &prefix : plan.installs) {
        m_steps.append({.prefix = prefix});
    }
    step();
}

// One after the other, so that nobody who works meanwhile feels a burst of downloads.
void Converger::step()
{
    if (m_steps.isEmpty()) {
        m_with.packages.whenSettled(this, [this] { finish(); });
        return;
    }
    const Step step = m_steps.takeFirst();
    const Manner manner{.skipRunningTargets = true, .unattended = true, .foreseen = m_outcome.foreseen};
    const auto ended = [this, step, self = QPointer(this)](const InstallOutcome &outcome) {
        if (self) {
            stepEnded(step, outcome);
        }
    };
    if (step.removes) {
        m_with.flow.uninstallWithPrefix(step.prefix, manner, ended);
    } else {
        m_with.flow.installWithPrefix(step.prefix, manner, ended);
    }
}

void Converger::stepEnded(const Step &step, const InstallOutcome &outcome)
{
    const QString name = nameOf(step.prefix);
    m_outcome.add(step.prefix, name, outcome);
    if (step.removes) {
        const bool kept = std::any_of(outcome.entries.cbegin(), outcome.entries.cend(),
            [](const PluginOutcome &entry) { return entry.end == PluginOutcome::End::LeftAlone; });
        if (kept) {
            m_outcome.addWaiting(step.prefix, name, u"needed"_s, neededByAnotherPackage());
        }
    } else if (outcome.entries.isEmpty()) {
        m_outcome.addWaiting(
            step.prefix, name, u"no target"_s, u"no target on this machine takes this package"_s);
    }
    this->step();
}

void Converger::finish()
{
    m_with.state.commit({}, this, [this](const std::optional<BrevokError> &error) {
        if (error) {
            m_outcome.addFailure(u"What was done cannot be stored: %1"_s.arg(error->description));
        }
        const ConvergeOutcome outcome = std::exchange(m_outcome, {});
        const Run run = m_runs.takeFirst();
        for (const QString &note : outcome.notes) {
            logLine(note);
        }
        logLine(outcome.summary());
        if (!outcome.foreseen) {
            Q_EMIT converged(outcome);
        }
        run.done(outcome);
        next();
    });
}

QString Converger::nameOf(const QString &prefix) const
{
    const QList<Record> packages = m_with.packages.packagesWithPrefix(prefix);
    return packages.isEmpty() ? QString() : packages.constFirst().value(PackageKeys::name).toString();
}

} // namespace brevok
