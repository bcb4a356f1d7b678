// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PluginList.h"

#include "catalogue/PluginDefinition.h"
#include "foundation/Log.h"
#include "foundation/StandardVersionComparator.h"

#include <QSet>

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

bool isFilledText(const QJsonValue &value)
{
    static const QJsonValue empty{QString()};
    return value.isString() && value != empty;
}

// Reads the element into @p build. Returns false when something that must be there is not.
bool read(const Record &record, ListedBuild &build, QString &host)
{
    build.name = nonEmptyString(record.value(PluginKeys::name));
    if (build.name.isNull() || !isNumber(record.value(PluginKeys::size))) {
        return false;
    }
    build.prefix = nonEmptyString(record.value(PluginKeys::prefix));
    if (build.prefix.isNull() || !isFilledText(record.value(PluginKeys::link))) {
        return false;
    }
    build.version = nonEmptyString(record.value(PluginKeys::version));
    const QJsonValue hostVersion = record.value(PluginKeys::hostVersion);
    if (build.version.isNull() || !isNumber(hostVersion)
        || !isFilledText(record.value(PluginKeys::published))) {
        return false;
    }
    host = displayText(hostVersion);
    build.hostVersion = integerValue(hostVersion);
    build.key = buildKeyOf(host, build.name, build.version);
    build.record = record;
    return true;
}

bool isNewer(const QString &version, const QString &than)
{
    return version != than && std::is_gt(StandardVersionComparator::compareVersion(version, than));
}

QList<ListedBuild> selectedBuilds(const QJsonArray &elements, bool &allValid)
{
    static const QJsonValue mac{PluginKeys::mac};
    QList<ListedBuild> selected;
    QHash<QString, qsizetype> positions;
    selected.reserve(elements.size());
    positions.reserve(elements.size());
    const auto refuse = [&allValid](const QString &line) {
        logLine(line);
        allValid = false;
    };
    for (const QJsonValue element : elements) {
        if (!element.isObject()) {
            refuse(u"plugin is not nsdirectory!"_s);
            continue;
        }
        const Record record = element.toObject();
        if (record.value(PluginKeys::platform) != mac) {
            continue;
        }
        ListedBuild build;
        QString host;
        if (!read(record, build, host)) {
            refuse(u"incomming plugin package do not containe necessary data!"_s);
            continue;
        }
        const QString key = host + build.name + build.prefix;
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

} // namespace

QString buildKey(const Record &definition)
{
    return buildKeyOf(displayText(definition.value(PluginKeys::hostVersion)),
        displayText(definition.value(PluginKeys::name)), displayText(definition.value(PluginKeys::version)));
}

std::optional<QByteArray> archiveChecksum(const Record &definition)
{
    constexpr qsizetype size = 32;
    const QJsonValue value = definition.value(PluginKeys::checksum);
    if (value.isUndefined() || value.isNull()) {
        return QByteArray();
    }
    const QByteArray digits = value.toString().toUtf8();
    const QByteArray checksum = QByteArray::fromHex(digits);
    // Whatever is no digit is left out there.
    return checksum.size() == size && digits.size() == 2 * size ? std::optional(checksum) : std::nullopt;
}

PluginList newestBuilds(QJsonArray list)
{
    PluginList result;
    QList<ListedBuild> selected = selectedBuilds(std::exchange(list, {}), result.allValid);
    // Only now, when nothing else refers to the elements, is no copy made of them.
    QHash<QString, qsizetype> groups;
    QList<QJsonArray> prefixes; // one for all builds of a group
    for (ListedBuild &build : selected) {
        const auto known = groups.constFind(build.prefix);
        const qsizetype group = known == groups.cend() ? result.prefixes.size() : *known;
        if (known == groups.cend()) {
            groups.insert(build.prefix, group);
            result.prefixes.append({.prefix = build.prefix});
            prefixes.append({build.prefix});
        }
        build.record.remove(PluginKeys::commandQueue);
        build.record.remove(PluginKeys::savedVersion);
        build.record.insert(PluginKeys::prefixes, prefixes[group]);
        result.prefixes[group].builds.append(std::move(build));
    }
    for (ListedPrefix &group : result.prefixes) {
        QSet<std::pair<QStringView, qint64>> places;
        for (const ListedBuild &build : std::as_const(group.builds)) {
            places.insert({build.name, build.hostVersion});
        }
        group.onePlaceEach = places.size() == group.builds.size();
    }
    return result;
}

} // namespace brevok
