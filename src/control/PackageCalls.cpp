// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/PackageCalls.h"

#include "catalogue/BrevokPackages.h"
#include "control/StatusDocument.h"
#include "install/UpdateRun.h"

#include <QJsonDocument>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

QVariantList documentOf(const InstallOutcome &outcome)
{
    return {QString::fromUtf8(QJsonDocument(outcomeDocument(outcome)).toJson(QJsonDocument::Compact))};
}

} // namespace

PackageCalls::PackageCalls(BrevokPlugins &plugins, BrevokPackages &packages, InstallFlow &flow,
    UpdateRun &updates, StateStore &state, QObject *parent)
    : QObject(parent)
    , m_plugins(plugins)
    , m_packages(packages)
    , m_flow(flow)
    , m_updates(updates)
    , m_state(state)
{
}

PackageCalls::~PackageCalls() = default;

// The question is about the queues that these calls would fill, and comes before every list.
bool PackageCalls::refusedBeforeAnswer(const ControlCall &call) const
{
    const bool asks = m_plugins.asksAboutUnfinishedActions();
    if (asks) {
        call.refuse(
            u"The question about unfinished actions waits for its answer; 'brevokctl discard' discards "
            "them."_s);
    }
    return asks;
}

bool PackageCalls::refusedUnknown(const ControlCall &call, const QStringList &prefixes) const
{
    if (refusedBeforeAnswer(call)) {
        return true;
    }
    if (prefixes.isEmpty()) {
        call.refuse(u"No package is named."_s);
        return true;
    }
    const auto unknown = std::find_if(prefixes.cbegin(), prefixes.cend(),
        [this](const QString &prefix) { return m_packages.packagesWithPrefix(prefix).isEmpty(); });
    if (unknown == prefixes.cend()) {
        return false;
    }
    call.refuse(u"No package has the prefix '%1'."_s.arg(*unknown));
    return true;
}

PackageCalls::Ended PackageCalls::answerAfter(const ControlCall &call, qsizetype count)
{
    struct State {
        qsizetype open;
        Answer answer;
    };
    return [this, call, state = std::make_shared<State>(State{count, {}})](const Answer &part) {
        state->answer.failures += part.failures;
        if (part.outcome) {
            state->answer.outcome = state->answer.outcome.value_or(InstallOutcome()) += *part.outcome;
        }
        if (--state->open == 0) {
            answerWhenSettled(call, state->answer);
        }
    };
}

void PackageCalls::answerWhenSettled(const ControlCall &call, const Answer &all)
{
    m_packages.whenSettled(this, [call, all, &state = m_state] {
        call.answerWhenStored(state, all.failures, all.outcome ? documentOf(*all.outcome) : QVariantList());
    });
}

void PackageCalls::check(const ControlCall &call)
{
    if (refusedBeforeAnswer(call)) {
        return;
    }
    m_packages.checkForUpdates(false, [this, call](const OwnCheck::End &end) {
        QStringList failures;
        if (end.plugins) {
            failures.append(u"The list of plug-ins could not be read."_s);
        }
        if (end.packages) {
            failures.append(u"The list of packages could not be read."_s);
        }
        answerWhenSettled(call, {.failures = failures});
    });
}

void PackageCalls::install(const ControlCall &call, const QStringList &prefixes)
{
    if (!refusedUnknown(call, prefixes)) {
        runForEach(call, prefixes, false);
    }
}

void PackageCalls::updateAll(const ControlCall &call)
{
    if (refusedBeforeAnswer(call)) {
        return;
    }
    m_updates.start([ended = answerAfter(call, 1)](const InstallOutcome &outcome) {
        ended({.failures = outcome.failureSentences(), .outcome = outcome});
    });
}

void PackageCalls::remove(const ControlCall &call, const QStringList &prefixes)
{
    if (!refusedUnknown(call, prefixes)) {
        runForEach(call, prefixes, true);
    }
}

void PackageCalls::runForEach(const ControlCall &call, const QStringList &prefixes, bool remove)
{
    const auto done = [ended = answerAfter(call, prefixes.size())](const InstallOutcome &outcome) {
        ended({.failures = outcome.failureSentences(), .outcome = outcome});
    };
    for (const QString &prefix : prefixes) {
        if (remove) {
            m_flow.uninstallWithPrefix(prefix, done);
        } else {
            m_flow.installWithPrefix(prefix, false, done);
        }
    }
}

void PackageCalls::discard(const ControlCall &call)
{
    if (m_flow.isBusy()) {
        call.refuse(u"An install or a removal is under way; try again when it has ended."_s);
        return;
    }
    m_plugins.discardActions();
    call.confirmWhenStored(m_state);
}

} // namespace brevok
