// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/DefinitionTables.h"

#include <algorithm>
#include <utility>

namespace brevok {

namespace {

// Where the first definition of a plug-in and host version stands in an array.
using PlaceKey = std::pair<QString, qint64>;
using Places = QHash<PlaceKey, qsizetype>;

PlaceKey placeKey(const Record &definition)
{
    return {definition.value(PluginKeys::name).toString(),
        integerValue(definition.value(PluginKeys::hostVersion))};
}

Places placesIn(const QList<DefinitionPtr> &definitions)
{
    Places places;
    places.reserve(definitions.size());
    for (qsizetype i = 0; i < definitions.size(); ++i) {
        const PlaceKey key = placeKey(definitions[i]->record);
        if (!places.contains(key)) {
            places.insert(key, i);
        }
    }
    return places;
}

void ensurePrefix(PluginDefinition &definition, const QString &prefix)
{
    const QJsonValue known = definition.record.value(PluginKeys::prefixes);
    QJsonArray prefixes = known.toArray();
    const bool missing = !prefix.isEmpty() && !prefixes.contains(prefix);
    if (missing) {
        prefixes.append(prefix);
    }
    if (missing || !known.isArray()) {
        definition.record.insert(PluginKeys::prefixes, prefixes);
    }
}

void copyValue(QLatin1StringView key, const Record &from, Record &to)
{
    if (const QJsonValue value = from.value(key); to.value(key) != value) {
        to.insert(key, value);
    }
}

bool isCommand(const QJsonValue &value)
{
    const QJsonArray command = value.toArray();
    return !command.isEmpty()
        && std::all_of(command.cbegin(), command.cend(), [](const auto &part) { return part.isString(); });
}

// Removes local state of a shape that this program never writes. Returns how many values that were.
int removeUnusableState(Record &record)
{
    int removed = 0;
    const auto drop = [&](QLatin1StringView key) {
        record.remove(key);
        ++removed;
    };
    if (const QJsonValue saved = record.value(PluginKeys::savedVersion);
        !saved.isUndefined() && !saved.isString()) {
        drop(PluginKeys::savedVersion);
    }
    if (const QJsonValue prefixes = record.value(PluginKeys::prefixes);
        !prefixes.isUndefined() && !prefixes.isArray()) {
        drop(PluginKeys::prefixes);
    }
    const QJsonValue queue = record.value(PluginKeys::commandQueue);
    const QJsonArray commands = queue.toArray();
    if ((!queue.isUndefined() && !queue.isArray())
        || !std::all_of(commands.cbegin(), commands.cend(), isCommand)) {
        drop(PluginKeys::commandQueue);
        QJsonArray usable;
        std::copy_if(commands.cbegin(), commands.cend(), std::back_inserter(usable), isCommand);
        if (!usable.isEmpty()) {
            record.insert(PluginKeys::commandQueue, usable);
        }
    }
    return removed;
}

} // namespace

bool hasPendingCommands(const Record &definition)
{
    return !definition.value(PluginKeys::commandQueue).toArray().isEmpty();
}

DefinitionPtr DefinitionTables::entered(const Record &definition)
{
    DefinitionPtr &entry = m_byBuild[buildKey(definition)];
    if (!entry) {
        entry = std::make_shared<PluginDefinition>(PluginDefinition{definition});
    }
    return entry;
}

int DefinitionTables::load(const Record &stored)
{
    int unusable = 0;
    for (auto entry = stored.constBegin(); entry != stored.constEnd(); ++entry) {
        if (!entry.value().isArray()) {
            ++unusable;
            continue;
        }
        QList<DefinitionPtr> definitions;
        const QJsonArray elements = entry.value().toArray();
        for (const QJsonValue element : elements) {
            Record record = element.toObject();
            if (nonEmptyString(record.value(PluginKeys::name)).isNull()) {
                ++unusable;
                continue;
            }
            unusable += removeUnusableState(record);
            const DefinitionPtr definition = entered(record);
            const QString prefix = nonEmptyString(record.value(PluginKeys::prefix));
            ensurePrefix(*definition, prefix);
            if (definition->record.value(PluginKeys::savedVersion).toString() == PluginKeys::downloading) {
                definition->record.remove(PluginKeys::savedVersion);
            }
            definitions.append(definition);
        }
        m_byPrefix.insert(entry.key(), definitions);
    }
    return unusable;
}

Record DefinitionTables::stored() const
{
    Record stored;
    for (auto entry = m_byPrefix.cbegin(); entry != m_byPrefix.cend(); ++entry) {
        QJsonArray definitions;
        for (const DefinitionPtr &definition : entry.value()) {
            definitions.append(definition->record);
        }
        stored.insert(entry.key(), definitions);
    }
    return stored;
}

DefinitionPtr DefinitionTables::mergedBuild(ListedBuild &build, const QString &key, const QJsonArray &alone)
{
    DefinitionPtr &definition = m_byBuild[key];
    if (definition) {
        copyValue(PluginKeys::link, build.record, definition->record);
        copyValue(PluginKeys::size, build.record, definition->record);
        ensurePrefix(*definition, build.prefix);
        return definition;
    }
    definition = std::make_shared<PluginDefinition>();
    Record &record = definition->record;
    record = std::move(build.record);
    // What the service sends under the keys that this program writes would be taken for local state. A record
    // of the required keys alone holds none.
    if (record.size() > ListedBuild::requiredKeys) {
        record.remove(PluginKeys::commandQueue);
        record.remove(PluginKeys::savedVersion);
    }
    record.insert(PluginKeys::prefixes, alone);
    return definition;
}

DefinitionTables::ListedKeys DefinitionTables::merge(QList<ListedBuild> builds)
{
    // What one prefix of the reply needs, looked up once per build.
    struct Group {
        QList<DefinitionPtr> *definitions = nullptr;
        QStringList keys{};
        QJsonArray alone{}; ///< this prefix only, shared by most definitions
        Places places{};
    };
    QHash<QString, Group> groups;
    m_byBuild.reserve(m_byBuild.size() + builds.size());
    for (ListedBuild &build : builds) {
        Group &group = groups[build.prefix];
        if (group.definitions == nullptr) {
            group.definitions = &m_byPrefix[build.prefix];
            group.alone.append(build.prefix);
            group.places = placesIn(*group.definitions);
        }
        QString key = build.key();
        const DefinitionPtr definition = mergedBuild(build, key, group.alone);
        group.keys.append(std::move(key));

        const PlaceKey place{build.name, build.hostVersion};
        if (const auto known = group.places.constFind(place); known == group.places.cend()) {
            group.places.insert(place, group.definitions->size());
            group.definitions->append(definition);
        } else if (DefinitionPtr &former = (*group.definitions)[*known]; former != definition) {
            former = definition;
            // Names and versions that run into each other can share a build key across plug-ins.
            if (placeKey(definition->record) != place) {
                group.places = placesIn(*group.definitions);
            }
        }
    }
    ListedKeys listed;
    listed.reserve(groups.size());
    for (auto group = groups.cbegin(); group != groups.cend(); ++group) {
        listed.insert(group.key(), group->keys);
    }
    return listed;
}

void DefinitionTables::dropWhatIsNotListed(const ListedKeys &listed)
{
    for (auto prefix = listed.cbegin(); prefix != listed.cend(); ++prefix) {
        QList<DefinitionPtr> &definitions = m_byPrefix[prefix.key()];
        if (definitions.size() == prefix.value().size()) {
            continue;
        }
        QHash<QString, int> unmatched;
        for (const QString &key : prefix.value()) {
            ++unmatched[key];
        }
        definitions.removeIf([&unmatched](const DefinitionPtr &definition) {
            const auto match = unmatched.find(buildKey(definition->record));
            if (match == unmatched.end() || *match == 0) {
                return true;
            }
            --*match;
            return false;
        });
    }
}

bool DefinitionTables::hasPendingCommands() const
{
    return std::any_of(m_byBuild.cbegin(), m_byBuild.cend(),
        [](const DefinitionPtr &definition) { return brevok::hasPendingCommands(definition->record); });
}

void DefinitionTables::discardCommands()
{
    for (const DefinitionPtr &definition : std::as_const(m_byBuild)) {
        definition->record.remove(PluginKeys::commandQueue);
    }
}

} // namespace brevok
