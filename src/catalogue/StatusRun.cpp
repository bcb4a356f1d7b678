// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/StatusRun.h"

#include "foundation/BoundedWork.h"
#include "foundation/Log.h"
#include "targets/TargetLook.h"

#include <future>
#include <span>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// What a calculation needs of a target, read once and not per combination.
struct Target {
    QString path;
    QString version;
    HostCode host;
};

// What is to be looked at in one target.
struct TargetBundles {
    QString path;
    QList<BundleName> names;
    InstalledBundles known;
};

// A target that does not answer is taken as it was.
BundlesOfTargets lookAtEach(std::span<const TargetBundles> targets, const Task &cameBack)
{
    BundlesOfTargets found;
    for (const TargetBundles &target : targets) {
        const auto look = [target](Pulse &pulse) {
            return lookAtBundles(target.path, target.names, target.known, pulse);
        };
        found.insert(target.path,
            bounded<InstalledBundles>(placeOf(target.path), look, cameBack).value_or(target.known));
    }
    return found;
}

class StatusRun final {
public:
    explicit StatusRun(const StatusInput &input)
        : m_input(input)
    {
        for (auto target = input.validTargets.cbegin(); target != input.validTargets.cend(); ++target) {
            const QJsonValue version = target->value(TargetKeys::version);
            m_targets.append({target.key(), displayText(version), HostCode(integerValue(version))});
        }
    }

    // Most of the time goes into the system's look-ups, of which it does two at once.
    void lookAtTargets(const Task &cameBack)
    {
        QList<TargetBundles> targets;
        for (const Target &target : std::as_const(m_targets)) {
            targets.append({target.path, namesFor(target.host), m_input.known.value(target.path)});
        }
        const std::span all(std::as_const(targets));
        const size_t half = all.size() / 2;
        auto others = std::async([&] { return lookAtEach(all.first(half), cameBack); });
        m_result.known = lookAtEach(all.subspan(half), cameBack);
        m_result.known.insert(others.get());
    }

    StatusResult all()
    {
        for (const QString &prefix : m_input.prefixes) {
            calculatePackageStatusForPrefix(prefix);
        }
        return std::move(m_result);
    }

private:
    [[nodiscard]] QList<BundleName> namesFor(HostCode host)
    {
        QSet<QString> names;
        for (const QString &prefix : m_input.prefixes) {
            const QList<StatusBuild> builds = m_input.builds.value(prefix);
            for (const StatusBuild &build : builds) {
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
        const InstalledBundles &bundles = *m_result.known.constFind(target.path);
        const QList<StatusBuild> builds = m_input.builds.value(prefix);
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

StatusBuild::StatusBuild(const PluginDefinition &definition)
    : hostVersion(definition.hostVersion)
    , host(hostVersion)
    , name(definition.name)
    , version(definition.version)
    , pending(hasPendingCommands(definition))
    , support(isSupportPlugin(name))
{
}

QList<StatusBuild> statusBuilds(const QList<DefinitionPtr> &definitions)
{
    QList<StatusBuild> builds;
    builds.reserve(definitions.size());
    for (const DefinitionPtr &definition : definitions) {
        builds.emplaceBack(*definition);
    }
    return builds;
}

StatusResult calculatedStatuses(const StatusInput &input, const Task &cameBack)
{
    StatusRun run(input);
    run.lookAtTargets(cameBack);
    return run.all();
}

} // namespace brevok
