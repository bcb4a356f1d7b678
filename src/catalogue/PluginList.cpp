// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PluginList.h"

#include "catalogue/PluginDefinition.h"
#include "foundation/Log.h"
#include "foundation/StandardVersionComparator.h"

#include <compare>
#include <utility>

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

// Reads the element into @p build. Returns false when something that must be there is not.
bool read(const Record &record, ListedBuild &build)
{
    build.name = nonEmptyString(record.value(PluginKeys::name));
    if (build.name.isNull() || !isNumber(record.value(PluginKeys::size))) {
        return false;
    }
    build.prefix = nonEmptyString(record.value(PluginKeys::prefix));
    if (build.prefix.isNull() || nonEmptyString(record.value(PluginKeys::link)).isNull()) {
        return false;
    }
    build.version = nonEmptyString(record.value(PluginKeys::version));
    const QJsonValue host = record.value(PluginKeys::hostVersion);
    if (build.version.isNull() || !isNumber(host)
        || nonEmptyString(record.value(PluginKeys::published)).isNull()) {
        return false;
    }
    build.host = displayText(host);
    build.hostVersion = integerValue(host);
    build.record = record;
    return true;
}

bool isNewer(const QString &version, const QString &than)
{
    return version != than && std::is_gt(StandardVersionComparator::compareVersion(version, than));
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

QList<ListedBuild> newestBuilds(QJsonArray list)
{
    const QJsonArray elements = std::exchange(list, {});
    QList<ListedBuild> selected;
    QHash<QString, qsizetype> positions;
    selected.reserve(elements.size());
    positions.reserve(elements.size());
    for (const QJsonValue element : elements) {
        if (!element.isObject()) {
            logLine(u"plugin is not nsdirectory!"_s);
            continue;
        }
        const Record record = element.toObject();
        if (record.value(PluginKeys::platform).toString() != PluginKeys::mac) {
            continue;
        }
        ListedBuild build;
        if (!read(record, build)) {
            logLine(u"incomming plugin package do not containe necessary data!"_s);
            continue;
        }
        const QString key = build.host + build.name + build.prefix;
        const auto known = positions.constFind(key);
        if (known == positions.cend()) {
            positions.insert(key, selected.size());
            selected.append(std::move(build));
        } else if (!isNewer(selected[*known].version, build.version)) {
            selected[*known] = std::move(build);
        }
    }
    return selected;
}

} // namespace brevok
