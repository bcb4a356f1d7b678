// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "reporting/UsageReport.h"

#include "catalogue/PackageStatus.h"
#include "reporting/InstalledPlugins.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

using PrefixByName = QHash<QString, QString>;

// Of definitions with one name the last counts, in order of the prefixes.
PrefixByName prefixesByName(const PackedSnapshot &definitions)
{
    PrefixByName prefixes;
    QStringList keys = definitions.keys();
    keys.sort();
    for (const QString &key : std::as_const(keys)) {
        const QList<PackedRecord> builds = definitions.value(key);
        for (const PackedRecord &packed : builds) {
            const Record build = packed;
            prefixes.insert(
                build.value(PluginKeys::name).toString(), build.value(PluginKeys::prefix).toString());
        }
    }
    return prefixes;
}

QString hostVersionNote(qint64 hostVersion, qint64 targetVersion)
{
    return hostVersion == targetVersion ? u"Correct host version :-)"_s
                                        : u"Plug-in host version (%1) is incorrect."_s.arg(hostVersion);
}

// Nothing for a plug-in that no definition knows.
std::optional<QJsonObject> pluginEntry(
    const Record &information, const PrefixByName &prefixes, qint64 targetVersion)
{
    const QString name = nonEmptyString(information.value("CFBundleExecutable"_L1));
    const QString prefix = name.isEmpty() ? QString() : prefixes.value(name);
    if (prefix.isEmpty()) {
        return std::nullopt;
    }
    const qint64 hostVersion = bundleFacts(true, information).hostVersion.value_or(0);
    QJsonObject entry{{u"Prefix"_s, prefix}, {u"Note"_s, hostVersionNote(hostVersion, targetVersion)}};
    if (const QJsonValue version = information.value("CFBundleShortVersionStringTemplate"_L1);
        !version.isUndefined()) {
        entry.insert("Version"_L1, version);
    }
    return entry;
}

} // namespace

QJsonObject gatheredUsage(const UsageSnapshot &snapshot)
{
    const PrefixByName prefixes = prefixesByName(snapshot.definitions);
    QJsonArray installed;
    for (const Record &target : snapshot.targets) {
        const QJsonValue version = target.value(TargetKeys::version);
        QJsonArray plugins;
        const auto found = installedPlugins(target.value(TargetKeys::path).toString());
        for (const std::optional<Record> &information : found) {
            if (const auto entry =
                    pluginEntry(information.value_or(Record()), prefixes, integerValue(version))) {
                plugins.append(*entry);
            }
        }
        installed.append(QJsonObject{{u"InDesignVersion"_s, version}, {u"Plugins"_s, plugins}});
    }
    return {{u"Platform"_s, u"Mac"_s}, {u"OSVersion"_s, u"macOS - "_s + operatingSystemVersion()},
        {u"AppVersion"_s, snapshot.appVersion.isEmpty() ? u"?.?"_s : snapshot.appVersion},
        {u"Installed"_s, installed}, {u"Uninstalled"_s, QJsonArray()}};
}

} // namespace brevok
