// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/StatusRun.h"

#include "foundation/BoundedWork.h"
#include "foundation/Log.h"
#include "targets/TargetLook.h"

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// What a calculation needs of a target, read once and not per combination.
struct Target {
    QString path;
    QString version;
    HostCode host;
};

class StatusRun final {
public:
    explicit StatusRun(const StatusInput &input)
        : m_input(input)
    {
        for (auto target = input.validTargets.cbegin(); target != input.validTargets.cend(); ++target) {
            const QJsonValue version = target->value(TargetKeys::version);
            m_targets.append({target.key(), displayText(version), HostCode(integerValue(version))});
        }
        for (const QString &prefix : input.prefixes) {
            m_result.known.builds.insert(prefix, buildsOf(prefix));
        }
    }

    // A target that does not answer is taken as it was.
    void lookAtTargets(const Task &cameBack)
    {
        for (const Target &target : std::as_const(m_targets)) {
            const InstalledBundles known = m_input.known.bundles.value(target.path);
            const auto look = [path = target.path, names = namesFor(target.host), known](Pulse &pulse) {
                return lookAtBundles(path, names, known, pulse);
            };
            m_result.known.bundles.insert(
                target.path, bounded<InstalledBundles>(placeOf(target.path), look, cameBack).value_or(known));
        }
    }

    StatusResult all()
    {
        for (const QString &prefix : m_input.prefixes) {
            calculatePackageStatusForPrefix(prefix);
        }
        return std::move(m_result);
    }

private:
    [[nodiscard]] StatusBuilds buildsOf(const QString &prefix) const
    {
        StatusBuilds builds = m_input.known.builds.value(prefix);
        const QList<Record> definitions = m_input.definitions.value(prefix);
        // Equal at once where nothing changed, as both share one dictionary.
        if (builds.definitions != definitions) {
            builds = {.definitions = definitions, .builds = {}};
            builds.builds.reserve(definitions.size());
            std::transform(definitions.cbegin(), definitions.cend(), std::back_inserter(builds.builds),
                [](const Record &definition) { return StatusBuild(definition); });
        }
        return builds;
    }

    [[nodiscard]] QList<BundleName> namesFor(HostCode host)
    {
        QSet<QString> names;
        for (const StatusBuilds &package : std::as_const(m_result.known.builds)) {
            for (const StatusBuild &build : package.builds) {
                if (hostMatches(host, build.host)) {
                    names.insert(build.name);
                }
            }
        }
        QList<BundleName> bundles;
        bundles.reserve(names.size());
        for (const QString &name : std::as_const(names)) {
            auto known = m_names.constFind(name);
            if (known == m_names.cend()) {
                known = m_names.insert(name, BundleName(name));
            }
            bundles.append(*known);
        }
        return bundles;
    }

    void calculatePackageStatusForPrefix(const QString &prefix)
    {
        std::optional<PackageStatus> status = PackageStatus::MissingData;
        for (const Target &target : std::as_const(m_targets)) {
            if (m_input.detailedLog) {
                logLine(u"App version: %1"_s.arg(target.version));
            }
            status = withTarget(status, target, prefix);
        }
        if (status) {
            m_result.statuses.insert(prefix, *status);
        }
    }

    // Nothing when it depends on a bundle that could not be looked at.
    std::optional<PackageStatus> withTarget(
        std::optional<PackageStatus> status, const Target &target, const QString &prefix)
    {
        const InstalledBundles &bundles = *m_result.known.bundles.constFind(target.path);
        const QList<StatusBuild> &builds = m_result.known.builds.constFind(prefix)->builds;
        for (const StatusBuild &build : builds) {
            if (!hostMatches(target.host, build.host)) {
                continue;
            }
            if (m_input.detailedLog) {
                logLine(u" Plugin: %1"_s.arg(build.hostVersion));
            }
            if (build.pending) {
                return PackageStatus::InProgress;
            }
            if (m_input.detailedLog) {
                logLine(installedPluginPath(target.path, build.name));
            }
            const auto bundle = bundles.constFind(build.name);
            if (bundle == bundles.cend()) {
                status.reset();
                continue;
            }
            const PackageStatus result = statusOfBundle(bundle->facts, target.host, build.version);
            if (result == PackageStatus::NotUpdated) {
                m_result.updates.insert(prefix);
            }
            if (status) {
                status = combinedStatus(*status, result, build.support, prefix);
            }
        }
        return status;
    }

    const StatusInput &m_input;
    QList<Target> m_targets;
    QHash<QString, BundleName> m_names;
    StatusResult m_result;
};

} // namespace

StatusBuild::StatusBuild(const Record &definition)
    : hostVersion(integerValue(definition.value(PluginKeys::hostVersion)))
    , host(hostVersion)
    , name(definition.value(PluginKeys::name).toString())
    , version(definition.value(PluginKeys::version).toString())
    , pending(hasPendingCommands(definition))
    , support(isSupportPlugin(name))
{
}

StatusResult calculatedStatuses(const StatusInput &input, const Task &cameBack)
{
    StatusRun run(input);
    run.lookAtTargets(cameBack);
    return run.all();
}

} // namespace brevok
