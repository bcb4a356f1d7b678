// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/RemoveOperation.h"

#include "catalogue/StatusRun.h"
#include "foundation/Paths.h"
#include "install/BrevokAppInstaller.h"
#include "install/CommandQueue.h"
#include "install/InstallPaths.h"
#include "install/InstallPlanning.h"
#include "install/RemovalRule.h"
#include "targets/BrevokTargetApps.h"
#include "targets/TargetJudgement.h"
#include "targets/TargetLook.h"

#include <algorithm>
#include <iterator>

namespace brevok {

namespace {

QString pathOf(const Record &target)
{
    return nonEmptyString(target.value(TargetKeys::path));
}

} // namespace

void RemoveOperation::begin()
{
    QList<Record> targets = m_with.targets.validTargets().values();
    targets.removeIf([](const Record &target) { return pathOf(target).isEmpty(); });
    QStringList paths;
    std::transform(targets.cbegin(), targets.cend(), std::back_inserter(paths), pathOf);
    inBackgroundThen(
        this, [paths] { return lookAtTargets(paths, {}, {}); },
        [this, targets](const TargetFindings &findings) {
            QList<Record> answering;
            for (const Record &target : targets) {
                const QString path = pathOf(target);
                if (findings.folders.contains(path)) {
                    answering.append(target);
                } else if (anySuitsTarget(definitions(), integerValue(target.value(TargetKeys::version)))) {
                    addFailure({}, doesNotAnswer(path));
                }
            }
            askWhatMayGo(answering);
        });
}

void RemoveOperation::askWhatMayGo(const QList<Record> &targets)
{
    QList<Candidate> candidates;
    QList<RemovalQuestion> questions;
    QSet<QString> refused;
    const QList<Record> records = definitions();
    for (const Record &target : targets) {
        const QString path = pathOf(target);
        for (const Record &record : records) {
            const QString name = record.value(PluginKeys::name).toString();
            if (!name.isEmpty() && !isPlainFileName(name)) {
                refused.insert(name);
                continue;
            }
            const QString pluginPath = installedPluginPath(path, name);
            candidates.append({buildKey(record), pluginPath});
            questions.append({name, pluginPath, m_prefix});
        }
    }
    for (const QString &name : std::as_const(refused)) {
        addFailure({}, nameRefused(name).description);
    }
    m_with.installer.canRemovePlugins(
        questions, this,
        [this, candidates](const QList<bool> &answers) { queueRemovals(candidates, answers); },
        !m_manner.unattended);
}

void RemoveOperation::queueRemovals(const QList<Candidate> &candidates, const QList<bool> &answers)
{
    for (const Candidate &candidate : candidates) {
        m_keys.append(candidate.key);
    }
    QMap<QString, CommandTask> foreseen; // by place, which several builds of a plug-in share
    const auto record = [&] {
        for (qsizetype i = 0; i < candidates.size(); ++i) {
            const DefinitionPtr shared = definition(candidates[i].key);
            if (shared && answers[i] && m_manner.foreseen) {
                const QString path = candidates[i].pluginPath;
                foreseen.insert(
                    path, {.plugin = shared->record.value(PluginKeys::name).toString(), .pluginPath = path});
            } else if (shared && answers[i]) {
                appendCommand(shared->record, removalCommand(candidates[i].pluginPath));
                m_removals.append(candidates[i].key);
            } else if (shared) {
                m_outcome.entries.append({.end = PluginOutcome::End::LeftAlone,
                    .plugin = shared->record.value(PluginKeys::name).toString(),
                    .target = targetFolder(candidates[i].pluginPath),
                    .reason = neededByAnotherPackage()});
            }
        }
    };
    if (m_manner.foreseen) {
        record();
        foresee(foreseen.values());
        return;
    }
    m_with.plugins.change(m_keys, record, this, [this](const auto & /*error*/) { removeNext(); });
    m_outcome.planned = static_cast<int>(m_removals.size());
}

void RemoveOperation::removeNext()
{
    if (m_removals.isEmpty()) {
        m_with.plugins.announceChange(m_keys);
        Q_EMIT finished();
        return;
    }
    m_with.installer.removePlugin(
        m_removals.takeFirst(), m_package, m_manner, this, [this](const CommandResult &result) {
            m_outcome.entries += result.entries;
            removeNext();
        });
}

} // namespace brevok
