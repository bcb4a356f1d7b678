// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/InstallPlanning.h"

#include "catalogue/BrevokPlugins.h"
#include "catalogue/PackageStatus.h"
#include "catalogue/StatusRun.h"
#include "foundation/BoundedWork.h"
#include "foundation/Paths.h"
#include "foundation/StandardVersionComparator.h"
#include "install/CommandQueue.h"
#include "install/InstallPaths.h"
#include "platform/FileState.h"
#include "platform/PropertyLists.h"
#include "targets/BrevokTargetApps.h"
#include "targets/TargetJudgement.h"
#include "targets/TargetLook.h"

#include <algorithm>
#include <tuple>

namespace brevok {

using namespace Qt::StringLiterals;

InstallFacts factsOfDisk()
{
    return {.exists = [](const QString &path) { return fileState(path).has_value(); },
        .information =
            [](const QString &bundlePath) {
                return bundleInformation(bundlePath);
            }};
}

bool buildSuitsTarget(qint64 target, qint64 build)
{
    // Stricter than the match that a status is made from, which lets a later minor of majors 7 and 16 pass.
    return hostMatches(HostCode(target), HostCode(build)) && HostCode(target).minor >= HostCode(build).minor;
}

bool anySuitsTarget(const QList<Record> &definitions, qint64 target)
{
    return std::any_of(definitions.cbegin(), definitions.cend(), [target](const Record &definition) {
        return buildSuitsTarget(target, integerValue(definition.value(PluginKeys::hostVersion)));
    });
}

InstallPlanner::InstallPlanner(const QList<Record> &definitions, QString dataPath, InstallFacts facts)
    : m_dataPath(std::move(dataPath))
    , m_facts(std::move(facts))
{
    for (const Record &definition : definitions) {
        const QString key = buildKey(definition);
        m_order.append(key);
        m_definitions.insert(key, definition);
    }
}

void InstallPlanner::determinePluginsAction(const QString &targetPath, qint64 targetVersion, Pulse &pulse)
{
    for (const QString &key : std::as_const(m_order)) {
        pulse.beat();
        const Record definition = m_definitions.value(key);
        const qint64 host = integerValue(definition.value(PluginKeys::hostVersion));
        if (!buildSuitsTarget(targetVersion, host)) {
            continue;
        }
        const QString name = definition.value(PluginKeys::name).toString();
        if (isPlainFileName(name)) {
            determinePluginAction(key, installedPluginPath(targetPath, name), host);
        } else if (const BrevokError error = nameRefused(name);
                   m_plan.refused.isEmpty() || m_plan.refused.constLast().description != error.description) {
            m_plan.refused.append(error);
        }
    }
}

void InstallPlanner::determinePluginAction(const QString &key, const QString &pluginPath, qint64 version)
{
    Record &definition = m_definitions[key];
    // Pending commands may be about to change what is on disk, so they are always planned again.
    if (commandQueue(definition).isEmpty() && isUpToDate(definition, pluginPath, version)) {
        m_plan.current.append({.key = key, .pluginPath = pluginPath});
        return;
    }
    const QString archive = archivePath(m_dataPath, definition);
    const QJsonValue saved = definition.value(PluginKeys::savedVersion);
    const bool reusable = saved.isString() && saved == definition.value(PluginKeys::version)
        && archiveChecksum(definition) && m_facts.exists(archive);
    const bool underWay = saved.toString() == PluginKeys::downloading;
    if (!reusable && !underWay && !m_plan.downloads.contains(key)) {
        m_plan.downloads.append(key);
        definition.remove(PluginKeys::savedVersion);
    }
    appendCommand(definition, installCommand(pluginPath, archive));
    m_plan.installs.append({key, pluginPath, archive});
}

bool InstallPlanner::isUpToDate(const Record &definition, const QString &pluginPath, qint64 version) const
{
    if (!m_facts.exists(pluginPath)) {
        return false;
    }
    const BundleFacts bundle = bundleFacts(true, m_facts.information(pluginPath));
    if (!bundle.hostVersion) {
        return false;
    }
    const HostCode wanted(version);
    const HostCode installed(*bundle.hostVersion);
    if (wanted.major != installed.major || wanted.minor < installed.minor) {
        return false;
    }
    const QString offered = nonEmptyString(definition.value(PluginKeys::version));
    if (bundle.version.isEmpty() || offered.isEmpty()) {
        return false;
    }
    return StandardVersionComparator::compareVersion(bundle.version, offered) != std::strong_ordering::less;
}

InstallPlan planInstall(const QList<Record> &definitions, const QList<Record> &targets,
    const QString &dataPath, const InstallFacts &facts)
{
    InstallPlanner planner(definitions, dataPath, facts);
    QList<BrevokError> silent;
    for (const Record &target : targets) {
        const QString path = nonEmptyString(target.value(TargetKeys::path));
        const QJsonValue stored = target.value(TargetKeys::version);
        const qint64 version = integerValue(stored);
        if (path.isEmpty() || stored.isUndefined() || stored.isNull()
            || !anySuitsTarget(definitions, version)) {
            continue;
        }
        const auto withTarget = [planner, path, version, exists = facts.exists](Pulse &pulse) {
            std::ignore = exists(path); // the plan itself need not ask, and is carried out there
            InstallPlanner further = planner;
            further.determinePluginsAction(path, version, pulse);
            return further;
        };
        if (auto further = bounded<InstallPlanner>(placeOf(path), withTarget)) {
            planner = std::move(*further);
        } else {
            silent.append(installerError(doesNotAnswer(path)));
        }
    }
    InstallPlan plan = planner.plan();
    plan.refused += silent;
    return plan;
}

} // namespace brevok
