// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/StatusRun.h"

#include "foundation/Log.h"
#include "platform/PropertyLists.h"

#include <QFileInfo>

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// What a calculation needs of a target and of a definition, read once and not per combination.
struct Target {
    QString path;
    QString version;
    HostCode host;
};

struct Build {
    explicit Build(const Record &definition)
        : hostVersion(integerValue(definition.value(PluginKeys::hostVersion)))
        , host(hostVersion)
        , name(definition.value(PluginKeys::name).toString())
        , version(definition.value(PluginKeys::version).toString())
        , pending(hasPendingCommands(definition))
        , support(isSupportPlugin(name))
    {
    }

    qint64 hostVersion;
    HostCode host;
    QString name;
    QString version;
    bool pending;
    bool support;
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
    }

    StatusResult all()
    {
        for (const QString &prefix : m_input.prefixes) {
            calculatePackageStatusForPrefix(prefix);
        }
        return std::move(m_result);
    }

private:
    void calculatePackageStatusForPrefix(const QString &prefix)
    {
        QList<Build> builds;
        const QList<Record> definitions = m_input.definitions.value(prefix);
        builds.reserve(definitions.size());
        std::transform(definitions.cbegin(), definitions.cend(), std::back_inserter(builds),
            [](const Record &definition) { return Build(definition); });

        PackageStatus status = PackageStatus::MissingData;
        for (const Target &target : m_targets) {
            if (m_input.detailedLog) {
                logLine(u"App version: %1"_s.arg(target.version));
            }
            status = withTarget(status, target, builds, prefix);
        }
        m_result.statuses.insert(prefix, status);
    }

    PackageStatus withTarget(
        PackageStatus status, const Target &target, const QList<Build> &builds, const QString &prefix)
    {
        for (const Build &build : builds) {
            if (!hostMatches(target.host, build.host)) {
                continue;
            }
            if (m_input.detailedLog) {
                logLine(u" Plugin: %1"_s.arg(build.hostVersion));
            }
            if (build.pending) {
                return PackageStatus::InProgress;
            }
            const BundleFacts &facts = installed(installedPluginPath(target.path, build.name));
            const PackageStatus result = statusOfBundle(facts, target.host, build.version);
            if (result == PackageStatus::NotUpdated) {
                m_result.updates.insert(prefix);
            }
            status = combinedStatus(status, result, build.support, prefix);
        }
        return status;
    }

    const BundleFacts &installed(const QString &path)
    {
        if (m_input.detailedLog) {
            logLine(path);
        }
        const auto known = m_bundles.constFind(path);
        if (known != m_bundles.cend()) {
            return *known;
        }
        const std::optional<Record> information = bundleInformation(path);
        const bool exists = information || QFileInfo::exists(path);
        return *m_bundles.insert(path, bundleFacts(exists, information));
    }

    const StatusInput &m_input;
    QList<Target> m_targets;
    QHash<QString, BundleFacts> m_bundles;
    StatusResult m_result;
};

} // namespace

QString installedPluginPath(const QString &targetPath, const QString &name)
{
    return targetPath + "/Tolvane/"_L1 + name + ".InDesignPlugin"_L1;
}

StatusResult calculatedStatuses(const StatusInput &input)
{
    return StatusRun(input).all();
}

} // namespace brevok
