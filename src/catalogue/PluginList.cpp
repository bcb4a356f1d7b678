// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PluginList.h"

#include "catalogue/PluginDefinition.h"
#include "foundation/Log.h"
#include "foundation/StandardVersionComparator.h"

#include <optional>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

QString buildKeyOf(const QString &host, const QString &name, const QString &version)
{
    QString key;
    key.reserve(host.size() + name.size() + version.size() + 2);
    key += host;
    key += u':';
    key += name;
    key += u'_';
    key += version;
    return key;
}

std::optional<ListedBuild> listedBuild(const Record &record)
{
    ListedBuild build;
    const auto text = [&record](QLatin1StringView key) {
        return nonEmptyString(record.value(key));
    };
    if (build.name = text(PluginKeys::name); build.name.isNull()) {
        return {};
    }
    if (!isNumber(record.value(PluginKeys::size))) {
        return {};
    }
    build.prefix = text(PluginKeys::prefix);
    if (build.prefix.isNull() || text(PluginKeys::link).isNull()) {
        return {};
    }
    build.version = text(PluginKeys::version);
    const QJsonValue host = record.value(PluginKeys::hostVersion);
    if (build.version.isNull() || !isNumber(host) || text(PluginKeys::published).isNull()) {
        return {};
    }
    build.host = displayText(host);
    build.hostVersion = integerValue(host);
    build.record = record;
    return build;
}

bool isNewer(const QString &version, const QString &than)
{
    return version != than && StandardVersionComparator::compareVersion(version, than) > 0;
}

} // namespace

QString buildKey(const Record &definition)
{
    return buildKeyOf(displayText(definition.value(PluginKeys::hostVersion)),
        displayText(definition.value(PluginKeys::name)), displayText(definition.value(PluginKeys::version)));
}

QString ListedBuild::key() const
{
    return buildKeyOf(host, name, version);
}

QList<ListedBuild> newestBuilds(const QJsonArray &list)
{
    QList<ListedBuild> selected;
    QHash<QString, qsizetype> positions;
    for (const QJsonValue &element : list) {
        if (!element.isObject()) {
            logLine(u"plugin is not nsdirectory!"_s);
            continue;
        }
        const Record record = element.toObject();
        if (record.value(PluginKeys::platform).toString() != PluginKeys::mac) {
            continue;
        }
        std::optional<ListedBuild> build = listedBuild(record);
        if (!build) {
            logLine(u"incomming plugin package do not containe necessary data!"_s);
            continue;
        }
        const QString key = build->host + build->name + build->prefix;
        const auto known = positions.constFind(key);
        if (known == positions.cend()) {
            positions.insert(key, selected.size());
            selected.append(std::move(*build));
        } else if (!isNewer(selected[*known].version, build->version)) {
            selected[*known] = std::move(*build);
        }
    }
    return selected;
}

} // namespace brevok
