// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PackageRecords.h"
#include "catalogue/StatusRun.h"
#include "foundation/Paths.h"
#include "foundation/StandardVersionComparator.h"
#include "fuzz/Lists.h"
#include "support/SampleBundles.h"

#include <QJsonDocument>

#include <algorithm>
#include <compare>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

// What the targets hold: by path, by the plug-in's name.
using Installed = QHash<QString, QHash<QString, Record>>;

// A line "VERSION" is a target, a line "NAME HOSTVERSION VERSION" a plug-in in the target before it.
Installed installed(const QByteArray &lines, TargetRecords *targets)
{
    constexpr qsizetype mostTargets = 5;
    Installed found;
    QString path;
    const QStringList all = QString::fromUtf8(lines).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : all) {
        const QStringList words = line.split(u' ');
        if (words.size() == 1 && targets->size() < mostTargets) {
            path = fuzz::scratchFolder() + u"/%1"_s.arg(targets->size());
            targets->insert(path, {{TargetKeys::version, line}});
        } else if (words.size() == 3 && !path.isEmpty() && isPlainFileName(words[0])
            && line.toUtf8().size() < 200 && line.toLatin1() == line.toUtf8()) {
            testing::writeInstalledPlugin(path, words[0], words[2], words[1]);
            found[path].insert(words[0],
                {{QString::fromLatin1(hostVersionKey), words[1]},
                    {QString::fromLatin1(versionKey), words[2]}});
        }
    }
    return found;
}

bool isSplit(qint64 major, qint64 a, qint64 b)
{
    const qint64 split = major == 16 ? 3 : 5;
    return (major == 16 || major == 7) && (a < split) != (b < split);
}

int resultOf(const PluginDefinition &build, const Record &information, HostCode target)
{
    if (information.isEmpty()) {
        return 2;
    }
    const BundleFacts bundle = bundleFacts(true, information);
    const HostCode host(bundle.hostVersion.value_or(-1));
    if (!bundle.hostVersion || host.major != target.major
        || isSplit(target.major, host.minor, target.minor)) {
        return 3;
    }
    if (information.value(QLatin1StringView(versionKey)).toString().isEmpty()) {
        return 2;
    }
    const bool older = StandardVersionComparator::compareVersion(bundle.version, build.version) < 0;
    return older ? 3 : 4;
}

// The status of a package as the rules have it.
int statusOf(const QString &prefix, const QList<DefinitionPtr> &builds, const TargetRecords &targets,
    const Installed &bundles)
{
    int status = 1;
    for (auto target = targets.cbegin(); target != targets.cend(); ++target) {
        const HostCode host(leadingInteger(target->value(TargetKeys::version).toString()));
        for (const DefinitionPtr &build : builds) {
            const HostCode own(build->hostVersion);
            const bool splits = host.major == 16 || host.major == 7;
            if (own.major != host.major || isSplit(host.major, own.minor, host.minor)
                || (!splits && host.minor < own.minor)) {
                continue;
            }
            const int result = resultOf(*build, bundles[target.key()].value(build->name), host);
            const bool support = build->name == u"Tolvane"_s || build->name == u"Vondrel Tools"_s;
            if (result == status || (support && prefix != u"KM#xR57"_s && prefix != u"0xr5700"_s)) {
                continue;
            }
            const bool waits = !support && (status == 7 || status == 3 || result == 3);
            status = status == 1 ? result : waits ? 7 : 6;
        }
    }
    return status;
}

PackageRecords packagesIn(const QByteArray &json)
{
    PackageRecords packages;
    QSet<QString> names;
    const QJsonArray list = wellFormed(QJsonDocument::fromJson(json).array()).toArray();
    for (const auto &[name, package] : listedPackages(list).packages) {
        HOLDS(!name.isEmpty() && package.value(PackageKeys::name) == name);
        HOLDS(name.isValidUtf16() && package.value(PackageKeys::platform) == u"Mac"_s);
        packages.put(name, package);
        names.insert(name);
    }
    HOLDS(packages.byName().size() == static_cast<size_t>(names.size()));
    for (const auto &[name, package] : packages.byName()) {
        const QString prefix = nonEmptyString(package.value(PackageKeys::prefix));
        HOLDS(prefix.isNull() || packages.namesWith(prefix).count(name) == 1);
        HOLDS(prefix.isNull() || packages.prefixes().count(prefix) == 1);
    }
    return packages;
}

} // namespace

// A list of products, one of plug-ins, and what is installed.
void fuzz::check(const QByteArray &input)
{
    const QList<QByteArray> all = parts(input, 3);
    const PackageRecords packages = packagesIn(all[0]);
    DefinitionTables tables;
    take(tables, newestBuilds(all[1]).value_or(PluginList()));
    TargetRecords targets;
    const Installed bundles = installed(all[2], &targets);
    StatusInput status{.prefixes = packages.prefixes(), .builds = {}, .validTargets = targets};
    bool arePlain = true;
    for (const QString &prefix : packages.prefixes()) {
        const QList<DefinitionPtr> builds = tables.byPrefix().value(prefix);
        status.builds.insert(prefix, statusBuilds(builds));
        arePlain = arePlain && std::all_of(builds.cbegin(), builds.cend(), [](const auto &build) {
            return isPlainFileName(build->name);
        });
    }
    const StatusResult result = calculatedStatuses(status);
    HOLDS(result.statuses.size() == status.prefixes.size());
    for (const QString &prefix : packages.prefixes()) {
        const auto found = static_cast<int>(result.statuses.value(prefix));
        HOLDS(!arePlain || found == statusOf(prefix, tables.byPrefix().value(prefix), targets, bundles));
        HOLDS(found != 3 || result.updates.contains(prefix));
    }
    for (auto target = targets.cbegin(); target != targets.cend(); ++target) {
        QDir(target.key()).removeRecursively();
    }
}
