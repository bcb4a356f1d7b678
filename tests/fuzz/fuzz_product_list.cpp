// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PackageRecords.h"
#include "catalogue/StatusRun.h"
#include "foundation/Paths.h"
#include "fuzz/Lists.h"
#include "support/SampleBundles.h"

#include <QDir>
#include <QJsonDocument>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

// A line "VERSION" is a target, a line "NAME HOSTVERSION VERSION" a plug-in in the target before it.
TargetRecords targetsWith(const QByteArray &lines)
{
    constexpr qsizetype mostTargets = 5;
    TargetRecords targets;
    QString path;
    const QStringList all = QString::fromUtf8(lines).split(u'\n', Qt::SkipEmptyParts);
    for (const QString &line : all) {
        const QStringList words = line.split(u' ');
        if (words.size() == 1 && targets.size() < mostTargets) {
            path = fuzz::scratchFolder() + u"/%1"_s.arg(targets.size());
            targets.insert(path, {{TargetKeys::version, line}});
        } else if (words.size() == 3 && !path.isEmpty() && isPlainFileName(words[0])
            && line.toUtf8().size() < 200 && line.toLatin1() == line.toUtf8()) {
            testing::writeInstalledPlugin(path, words[0], words[2], words[1]);
        }
    }
    return targets;
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
    const TargetRecords targets = targetsWith(all[2]);
    StatusInput status{.prefixes = packages.prefixes(), .builds = {}, .validTargets = targets};
    for (const QString &prefix : packages.prefixes()) {
        status.builds.insert(prefix, statusBuilds(tables.byPrefix().value(prefix)));
    }
    const StatusResult result = calculatedStatuses(status);
    HOLDS(result.statuses.size() == status.prefixes.size());
    for (const QString &prefix : packages.prefixes()) {
        const auto found = static_cast<int>(result.statuses.value(prefix));
        HOLDS(found >= 1 && found <= 7 && found != 5); // nothing has commands
        HOLDS(found != 3 || result.updates.contains(prefix));
    }
    for (auto target = targets.cbegin(); target != targets.cend(); ++target) {
        QDir(target.key()).removeRecursively();
    }
}
