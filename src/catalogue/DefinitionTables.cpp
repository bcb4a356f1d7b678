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

PlaceKey placeKey(const PluginDefinition &definition)
{
    return {definition.name, definition.hostVersion};
}

Places placesIn(const QList<DefinitionPtr> &definitions)
{
    Places places;
    places.reserve(definitions.size());
    for (qsizetype i = 0; i < definitions.size(); ++i) {
        const PlaceKey key = placeKey(*definitions[i]);
        if (!places.contains(key)) {
            places.insert(key, i);
        }
    }
    return places;
}

// @return whether that changed the record
bool ensurePrefix(Record &record, const QJsonValue &prefix)
{
    const QJsonValue known = record.value(PluginKeys::prefixes);
    QJsonArray prefixes = known.toArray();
    const bool missing = !prefixes.contains(prefix) && !nonEmptyString(prefix).isNull();
    if (missing) {
        prefixes.append(prefix);
    }
    if (missing || !known.isArray()) {
        record.insert(PluginKeys::prefixes, prefixes);
    }
    return missing || !known.isArray();
}

// Whether the definitions are the builds, each in its own place: then these stay where they are.
bool areInPlace(const QList<DefinitionPtr> &definitions, const ListedPrefix &listed)
{
    return listed.onePlaceEach
        && std::equal(definitions.cbegin(), definitions.cend(), listed.builds.cbegin(), listed.builds.cend(),
            [](const DefinitionPtr &definition, const ListedBuild &build) {
                // Names and versions that run into each other can share a build key across plug-ins.
                return definition->key == build.definition->key && definition->name == build.definition->name;
            });
}

// @return whether the value was another one
bool copyValue(QLatin1StringView key, const Record &from, Record &to)
{
    const bool differs = from.value(key) != to.value(key);
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

// What is stored of a prefix, as text: there may be thousands.
PackedRecord listOf(const QList<DefinitionPtr> &definitions)
{
    QByteArrayList keys;
    keys.reserve(definitions.size());
    for (const DefinitionPtr &definition : definitions) {
        keys.append(jsonString(definition->key));
    }
    return PackedRecord::fromJson(
        "{\"" + QByteArray(buildsKey.data(), buildsKey.size()) + "\":[" + keys.join(',') + "]}");
}

} // namespace

bool hasPendingCommands(const PluginDefinition &definition)
{
    return !definition.record.isPacked()
        && !definition.record.value(PluginKeys::commandQueue).toArray().isEmpty();
}

int DefinitionTables::place(const QString &prefix, const QList<StoredBuild> &stored)
{
    int unusable = 0;
    QList<DefinitionPtr> definitions;
    definitions.reserve(stored.size());
    for (const auto &[one, inOrder] : stored) {
        if (one.name.isEmpty()) {
            ++unusable;
            continue;
        }
        DefinitionPtr &definition = m_byBuild[one.key];
        const bool isNew = !definition;
        if (isNew) {
            definition = std::make_shared<PluginDefinition>(one);
        }
        if (!isNew || !inOrder) {
            Record &record = definition->record.unpacked();
            unusable += isNew ? removeUnusableState(record) : 0;
            ensurePrefix(record, one.record.value(PluginKeys::prefix));
            if (record.value(PluginKeys::savedVersion).toString() == PluginKeys::downloading) {
                record.remove(PluginKeys::savedVersion);
            }
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
    StoredBuildReader reader;
    for (auto entry = prefixes.cbegin(); entry != prefixes.cend(); ++entry) {
        const QJsonValue listed = entry->value(buildsKey);
        if (!listed.isArray()) {
            ++unusable;
            continue;
        }
        QList<StoredBuild> stored;
        const QJsonArray keys = listed.toArray();
        for (const QJsonValue value : keys) {
            const QString key = value.toString();
            stored.append(reader.read(key, builds.value(key)));
        }
        unusable += place(entry.key(), stored);
    }
    return unusable;
}

int DefinitionTables::loadLists(const Record &stored)
{
    int unusable = 0;
    StoredBuildReader reader;
    for (auto entry = stored.constBegin(); entry != stored.constEnd(); ++entry) {
        if (!entry.value().isArray()) {
            ++unusable;
            continue;
        }
        QList<StoredBuild> definitions;
        const QJsonArray elements = entry.value().toArray();
        for (const QJsonValue element : elements) {
            const Record record = element.toObject();
            definitions.append(reader.read(buildKey(record), record));
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
            noteChange(definition);
        }
    }
}

void DefinitionTables::noteChange(const QString &key)
{
    if (const DefinitionPtr definition = m_byBuild.value(key)) {
        noteChange(definition);
    }
}

void DefinitionTables::noteChange(const DefinitionPtr &definition)
{
    if (!std::exchange(definition->unsaved, true)) {
        m_changed.append(definition);
    }
}

void DefinitionTables::displace(const DefinitionPtr &definition)
{
    if (--definition->places == 0) {
        noteChange(definition);
    }
}

StateChanges DefinitionTables::changes()
{
    StateChanges changes;
    const QString data = CatalogueKeys::pluginsData;
    changes.reserve(m_changed.size() + m_changedPrefixes.size());
    for (const DefinitionPtr &definition : std::as_const(m_changed)) {
        definition->unsaved = false;
        // A build that no prefix lists is known until the program ends, and forgotten by the next start.
        changes.append({data, definition->key,
            definition->places > 0 ? std::optional(definition->record) : std::nullopt});
    }
    for (const QString &prefix : std::as_const(m_changedPrefixes)) {
        changes.append({CatalogueKeys::pluginPrefixes, prefix, listOf(m_byPrefix.value(prefix))});
    }
    m_changed.clear();
    m_changedPrefixes.clear();
    return changes;
}

DefinitionPtr DefinitionTables::mergedBuild(const ListedBuild &build)
{
    const PackedRecord &record = build.definition->record;
    DefinitionPtr &definition = m_byBuild[build.definition->key];
    if (!definition) {
        definition = build.definition;
        return definition;
    }
    if (definition->record.isPacked() && definition->record.json() == record.json()) {
        return definition;
    }
    const Record listed = record;
    Record known = definition->record.record();
    const bool newLink = copyValue(PluginKeys::link, listed, known);
    const bool newSize = copyValue(PluginKeys::size, listed, known);
    const bool newChecksum = copyValue(PluginKeys::checksum, listed, known);
    const bool newPrefix = ensurePrefix(known, build.prefix);
    const bool differs = newLink || newSize || newChecksum || newPrefix;
    if (known == listed) {
        definition->record = record; // whose text need not be written anew
    } else if (differs) {
        definition->record = known;
    }
    if (differs) {
        noteChange(definition);
    }
    return definition;
}

void DefinitionTables::merge(const ListedPrefix &listed)
{
    QList<DefinitionPtr> &definitions = m_byPrefix[listed.prefix];
    if (areInPlace(definitions, listed)) {
        for (const ListedBuild &build : listed.builds) {
            mergedBuild(build);
        }
        return;
    }
    const auto notePlaced = [&](const DefinitionPtr &definition) {
        m_changedPrefixes.insert(listed.prefix);
        noteChange(definition);
    };
    const bool allNew = definitions.isEmpty() && listed.onePlaceEach;
    Places places = placesIn(definitions);
    for (const ListedBuild &build : listed.builds) {
        const DefinitionPtr definition = mergedBuild(build);
        const PlaceKey place = placeKey(*build.definition);
        if (const auto known = places.constFind(place); known == places.cend()) {
            if (!allNew) {
                places.insert(place, definitions.size());
            }
            definitions.append(definition);
            ++definition->places;
            notePlaced(definition);
        } else if (DefinitionPtr &former = definitions[*known]; former != definition) {
            notePlaced(definition);
            ++definition->places;
            displace(former);
            former = definition;
            if (placeKey(*definition) != place) {
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
        ++unmatched[build.definition->key];
    }
    m_changedPrefixes.insert(listed.prefix);
    definitions.removeIf([&](const DefinitionPtr &definition) {
        const auto match = unmatched.find(definition->key);
        if (match == unmatched.end() || *match == 0) {
            displace(definition);
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
        [](const DefinitionPtr &definition) { return brevok::hasPendingCommands(*definition); });
}

void DefinitionTables::discardCommands()
{
    for (auto entry = m_byBuild.cbegin(); entry != m_byBuild.cend(); ++entry) {
        if (PackedRecord &record = entry.value()->record;
            !record.isPacked() && record.contains(PluginKeys::commandQueue)) {
            record.remove(PluginKeys::commandQueue);
            noteChange(entry.value());
        }
    }
}

} // namespace brevok
