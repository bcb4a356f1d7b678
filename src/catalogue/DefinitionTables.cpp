// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/DefinitionTables.h"

#include "catalogue/CatalogueKeys.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace brevok {

namespace {

constexpr QLatin1StringView buildsKey("Builds");

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

// @return whether that changed the definition
bool ensurePrefix(PluginDefinition &definition, const QJsonValue &prefix)
{
    const QJsonValue known = definition.record.value(PluginKeys::prefixes);
    QJsonArray prefixes = known.toArray();
    const bool missing = !prefixes.contains(prefix) && !nonEmptyString(prefix).isNull();
    if (missing) {
        prefixes.append(prefix);
    }
    if (missing || !known.isArray()) {
        definition.record.insert(PluginKeys::prefixes, prefixes);
    }
    return missing || !known.isArray();
}

bool isSameValue(QLatin1StringView key, const Record &a, const Record &b)
{
    return a.value(key) == b.value(key);
}

// Whether the definitions are the builds, each in its own place: then these stay where they are.
bool areInPlace(const QList<DefinitionPtr> &definitions, const ListedPrefix &listed)
{
    return listed.onePlaceEach
        && std::equal(definitions.cbegin(), definitions.cend(), listed.builds.cbegin(), listed.builds.cend(),
            [](const DefinitionPtr &definition, const ListedBuild &build) {
                // Names and versions that run into each other can share a build key across plug-ins.
                return definition->key == build.key
                    && isSameValue(PluginKeys::name, definition->record, build.record)
                    && isSameValue(PluginKeys::hostVersion, definition->record, build.record);
            });
}

// @return whether the value was another one
bool copyValue(QLatin1StringView key, const Record &from, Record &to)
{
    const bool differs = !isSameValue(key, from, to);
    if (differs) {
        to.insert(key, from.value(key));
    }
    return differs;
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

int DefinitionTables::place(const QString &prefix, const QList<PluginDefinition> &stored)
{
    int unusable = 0;
    QList<DefinitionPtr> definitions;
    definitions.reserve(stored.size());
    for (const PluginDefinition &one : stored) {
        if (nonEmptyString(one.record.value(PluginKeys::name)).isNull()) {
            ++unusable;
            continue;
        }
        DefinitionPtr &definition = m_byBuild[one.key];
        if (!definition) {
            definition = std::make_shared<PluginDefinition>(one);
            unusable += removeUnusableState(definition->record);
        }
        ensurePrefix(*definition, one.record.value(PluginKeys::prefix));
        if (definition->record.value(PluginKeys::savedVersion).toString() == PluginKeys::downloading) {
            definition->record.remove(PluginKeys::savedVersion);
        }
        ++definition->places;
        definitions.append(definition);
    }
    m_byPrefix.insert(prefix, definitions);
    return unusable;
}

int DefinitionTables::load(const StateEntries &builds, const StateEntries &prefixes)
{
    int unusable = 0;
    m_byBuild.reserve(builds.size());
    for (auto entry = prefixes.cbegin(); entry != prefixes.cend(); ++entry) {
        if (!entry->value(buildsKey).isArray()) {
            ++unusable;
            continue;
        }
        QList<PluginDefinition> stored;
        const QJsonArray keys = entry->value(buildsKey).toArray();
        for (const QJsonValue value : keys) {
            const QString key = value.toString();
            stored.append({key, builds.value(key)});
        }
        unusable += place(entry.key(), stored);
    }
    return unusable;
}

int DefinitionTables::loadLists(const Record &stored)
{
    int unusable = 0;
    for (auto entry = stored.constBegin(); entry != stored.constEnd(); ++entry) {
        if (!entry.value().isArray()) {
            ++unusable;
            continue;
        }
        QList<PluginDefinition> definitions;
        const QJsonArray elements = entry.value().toArray();
        for (const QJsonValue element : elements) {
            const Record record = element.toObject();
            definitions.append({buildKey(record), record});
        }
        unusable += place(entry.key(), definitions);
    }
    noteChangeOfEverything();
    return unusable;
}

void DefinitionTables::noteChangeOfEverything()
{
    for (auto entry = m_byPrefix.cbegin(); entry != m_byPrefix.cend(); ++entry) {
        m_changedPrefixes.insert(entry.key());
        for (const DefinitionPtr &definition : entry.value()) {
            m_changed.insert(definition->key);
        }
    }
}

StateChanges DefinitionTables::changes()
{
    StateChanges changes;
    // A build that no prefix lists is known until the program ends, and forgotten by the next start.
    for (const QString &key : std::as_const(m_displaced)) {
        if (const DefinitionPtr definition = m_byBuild.value(key); !definition || definition->places == 0) {
            m_changed.remove(key);
            changes.append({CatalogueKeys::pluginsData, key, std::nullopt});
        }
    }
    for (const QString &key : std::as_const(m_changed)) {
        if (const DefinitionPtr definition = m_byBuild.value(key)) {
            changes.append({CatalogueKeys::pluginsData, key, definition->record});
        }
    }
    for (const QString &prefix : std::as_const(m_changedPrefixes)) {
        QJsonArray keys;
        for (const DefinitionPtr &definition : m_byPrefix.value(prefix)) {
            keys.append(definition->key);
        }
        changes.append({CatalogueKeys::pluginPrefixes, prefix, Record{{buildsKey, keys}}});
    }
    m_displaced.clear();
    m_changed.clear();
    m_changedPrefixes.clear();
    return changes;
}

DefinitionPtr DefinitionTables::mergedBuild(ListedBuild &build)
{
    DefinitionPtr &definition = m_byBuild[build.key];
    if (!definition) {
        definition = std::make_shared<PluginDefinition>(PluginDefinition{build.key, std::move(build.record)});
        return definition;
    }
    const bool newLink = copyValue(PluginKeys::link, build.record, definition->record);
    const bool newSize = copyValue(PluginKeys::size, build.record, definition->record);
    const bool newChecksum = copyValue(PluginKeys::checksum, build.record, definition->record);
    const bool newPrefix = !isSameValue(PluginKeys::prefixes, build.record, definition->record)
        && ensurePrefix(*definition, build.prefix);
    if (newLink || newSize || newChecksum || newPrefix) {
        m_changed.insert(build.key);
    }
    return definition;
}

void DefinitionTables::merge(ListedPrefix &listed)
{
    QList<DefinitionPtr> &definitions = m_byPrefix[listed.prefix];
    if (areInPlace(definitions, listed)) {
        for (ListedBuild &build : listed.builds) {
            mergedBuild(build);
        }
        return;
    }
    Places places = placesIn(definitions);
    const auto notePlaced = [&](const ListedBuild &build) {
        m_changedPrefixes.insert(listed.prefix);
        m_changed.insert(build.key);
    };
    for (ListedBuild &build : listed.builds) {
        const DefinitionPtr definition = mergedBuild(build);
        const PlaceKey place{build.name, build.hostVersion};
        if (const auto known = places.constFind(place); known == places.cend()) {
            places.insert(place, definitions.size());
            definitions.append(definition);
            ++definition->places;
            notePlaced(build);
        } else if (DefinitionPtr &former = definitions[*known]; former != definition) {
            m_displaced.insert(former->key);
            notePlaced(build);
            --former->places;
            ++definition->places;
            former = definition;
            if (placeKey(definition->record) != place) {
                places = placesIn(definitions);
            }
        }
    }
}

void DefinitionTables::dropWhatIsNotListed(const ListedPrefix &listed)
{
    QList<DefinitionPtr> &definitions = m_byPrefix[listed.prefix];
    if (definitions.size() == listed.builds.size()) {
        return;
    }
    QHash<QString, int> unmatched;
    for (const ListedBuild &build : listed.builds) {
        ++unmatched[build.key];
    }
    m_changedPrefixes.insert(listed.prefix);
    definitions.removeIf([&](const DefinitionPtr &definition) {
        const auto match = unmatched.find(definition->key);
        if (match == unmatched.end() || *match == 0) {
            m_displaced.insert(definition->key);
            --definition->places;
            return true;
        }
        --*match;
        return false;
    });
}

qsizetype DefinitionTables::listed() const
{
    return std::accumulate(m_byPrefix.cbegin(), m_byPrefix.cend(), qsizetype(0),
        [](qsizetype sum, const QList<DefinitionPtr> &definitions) { return sum + definitions.size(); });
}

bool DefinitionTables::hasPendingCommands() const
{
    return std::any_of(m_byBuild.cbegin(), m_byBuild.cend(),
        [](const DefinitionPtr &definition) { return brevok::hasPendingCommands(definition->record); });
}

void DefinitionTables::discardCommands()
{
    for (auto entry = m_byBuild.cbegin(); entry != m_byBuild.cend(); ++entry) {
        if (entry.value()->record.contains(PluginKeys::commandQueue)) {
            entry.value()->record.remove(PluginKeys::commandQueue);
            m_changed.insert(entry.key());
        }
    }
}

} // namespace brevok
