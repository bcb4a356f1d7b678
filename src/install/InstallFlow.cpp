// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/InstallFlow.h"

#include "alerts/BrevokAlertQueue.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "install/InstallOperation.h"
#include "install/InstallPaths.h"
#include "install/RemoveOperation.h"
#include "targets/BrevokTargetApps.h"
#include "targets/MarketingNames.h"

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr auto makerOfHosts = "Adobe "_L1; // which people leave out

} // namespace

InstallFlow::InstallFlow(Collaborators collaborators, QObject *parent)
    : QObject(parent)
    , m_with(std::move(collaborators))
    , m_lastFailures(m_with.packages)
{
}

InstallFlow::~InstallFlow() = default;

void InstallFlow::installWithPrefix(const QString &prefix, bool skipRunningTargets, const Completion &done)
{
    installWithPrefix(prefix, Manner{.skipRunningTargets = skipRunningTargets}, done);
}

void InstallFlow::installWithPrefix(const QString &prefix, const Manner &manner, const Completion &done)
{
    forPackages(
        prefix,
        [&](const Record &package) { return new InstallOperation(*this, m_with, package, prefix, manner); },
        done);
}

void InstallFlow::installWithPackage(
    const Record &package, const QString &prefix, bool skipRunningTargets, const Completion &done)
{
    const bool complete = !package.isEmpty() && !prefix.isEmpty();
    enqueue(complete
            ? new InstallOperation(*this, m_with, package, prefix, {.skipRunningTargets = skipRunningTargets})
            : nullptr,
        done);
}

void InstallFlow::uninstallWithPrefix(const QString &prefix, const Completion &done)
{
    uninstallWithPrefix(prefix, Manner(), done);
}

void InstallFlow::uninstallWithPrefix(const QString &prefix, const Manner &manner, const Completion &done)
{
    forPackages(
        prefix,
        [&](const Record &package) { return new RemoveOperation(*this, m_with, package, prefix, manner); },
        done);
}

void InstallFlow::uninstallWithPackage(const Record &package, const QString &prefix, const Completion &done)
{
    const bool complete = !package.isEmpty() && !prefix.isEmpty();
    enqueue(complete ? new RemoveOperation(*this, m_with, package, prefix, {}) : nullptr, done);
}

void InstallFlow::forPackages(const QString &prefix, const Maker &make, const Completion &done)
{
    Operations operations;
    const QList<Record> packages = m_with.packages.packagesWithPrefix(prefix);
    for (const Record &package : packages) {
        operations.append(make(package));
    }
    if (operations.isEmpty()) {
        enqueue(nullptr, done);
        return;
    }
    struct Total {
        InstallOutcome outcome;
        qsizetype missing = 0;
    };
    auto total = std::make_shared<Total>();
    total->missing = operations.size();
    for (PackageOperation *operation : std::as_const(operations)) {
        enqueue(operation, [total, done](const InstallOutcome &outcome) {
            total->outcome += outcome;
            if (--total->missing == 0 && done) {
                done(total->outcome);
            }
        });
    }
}

void InstallFlow::enqueue(PackageOperation *operation, const Completion &done)
{
    if (operation == nullptr) {
        onMain(this, [done] {
            if (done) {
                done({});
            }
        });
        return;
    }
    connect(
        operation, &PackageOperation::finished, this, [this, operation, done] { ended(operation, done); });
    if (!operation->manner().foreseen) {
        m_lastFailures.forget(operation->prefix());
    }
    m_waiting.append(operation);
    // Later, so that an operation neither begins nor ends within the call that asks for it.
    onMain(this, [this] { startWhatCan(); });
}

// What no two operations may touch at a time: the prefix, and the archives of its definitions, which stand
// for the definitions too.
QSet<QString> InstallFlow::whatItTouches(const PackageOperation &operation) const
{
    QSet<QString> touched{u"prefix "_s + operation.prefix()};
    const QList<DefinitionPtr> definitions = m_with.plugins.pluginIndex().value(operation.prefix());
    for (const DefinitionPtr &definition : definitions) {
        touched.insert(archivePath({}, definition->record));
    }
    return touched;
}

void InstallFlow::startWhatCan()
{
    QSet<QString> taken;
    for (const QSet<QString> &touched : std::as_const(m_running)) {
        taken.unite(touched);
    }
    Operations starting;
    for (PackageOperation *operation : std::as_const(m_waiting)) {
        const QSet<QString> touched = whatItTouches(*operation);
        if (!taken.intersects(touched)) {
            m_running.insert(operation, touched);
            starting.append(operation);
        }
        // What an operation waits for is kept for it: a later one must not overtake it.
        taken.unite(touched);
    }
    for (PackageOperation *operation : std::as_const(starting)) {
        m_waiting.removeOne(operation);
    }
    for (PackageOperation *operation : std::as_const(starting)) {
        operation->begin();
    }
}

void InstallFlow::ended(PackageOperation *operation, const Completion &done)
{
    const InstallOutcome outcome = withTargetNames(operation->outcome());
    if (!operation->manner().foreseen) {
        for (const PluginOutcome &entry : outcome.entries) {
            if (!entry.reason.isEmpty()) {
                logLine(u"%1: %2"_s.arg(endName(entry.end), entry.sentence()));
            }
        }
        m_lastFailures.note(operation->prefix(), operation->packageName(), outcome);
    }
    m_running.remove(operation);
    operation->deleteLater();
    startWhatCan();
    if (done) {
        done(outcome);
    }
    if (!isBusy()) {
        Q_EMIT becameIdle();
    }
}

InstallOutcome InstallFlow::withTargetNames(InstallOutcome outcome) const
{
    const TargetRecords &records = m_with.targets.allRecords();
    for (PluginOutcome &entry : outcome.entries) {
        const auto record = std::find_if(records.cbegin(), records.cend(), [&](const Record &target) {
            return withoutTrailingSlashes(target.value(TargetKeys::path).toString())
                == withoutTrailingSlashes(entry.target);
        });
        if (record == records.cend()) {
            entry.targetName = entry.target;
            continue;
        }
        entry.target = record.key();
        entry.targetName = targetLabel(*record);
        if (entry.targetName.startsWith(makerOfHosts)) {
            entry.targetName.remove(0, makerOfHosts.size());
        }
    }
    return outcome;
}

void InstallFlow::reportError(const QList<BrevokError> &errors, const QString &plugin)
{
    for (const BrevokError &error : errors) {
        logError(error);
    }
    showFailure({errors, plugin});
}

void InstallFlow::tellTogether(const InstallOutcome &outcome)
{
    FailureReport whole;
    for (const FailureReport &report : outcome.untold) {
        if (whole.errors.isEmpty()) {
            whole.plugin = report.plugin;
        }
        whole.errors += report.errors;
    }
    showFailure(whole);
}

void InstallFlow::showFailure(const FailureReport &report)
{
    const QList<BrevokError> &errors = report.errors;
    if (errors.isEmpty()) {
        return;
    }
    BrevokError shown =
        installerError(Texts::tr("Failed to install '%1.InDesignPlugin'!").arg(report.plugin));
    shown.detailedErrors = errors;
    if (errors.size() > 1) {
        shown.recoverySuggestion = Texts::tr("Multiple errors have occured. Please contact Tolvane support.");
    } else if (!errors.constFirst().description.isEmpty()) {
        shown.recoverySuggestion = Texts::tr("Error: %1").arg(errors.constFirst().description);
    }
    if (auto alert = BrevokAlert::alertWithError(m_with.alerts.presenter(), shown)) {
        m_with.alerts.show(std::move(alert), this);
    }
}

} // namespace brevok
