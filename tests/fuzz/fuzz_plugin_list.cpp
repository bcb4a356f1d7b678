// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/CatalogueKeys.h"
#include "foundation/StandardVersionComparator.h"
#include "fuzz/Lists.h"

#include <QJsonDocument>

#include <algorithm>
#include <compare>

using namespace brevok;

namespace {

using Selection = QList<std::pair<QString, QString>>; // prefix and build key

bool isComplete(const Record &element)
{
    using namespace PluginKeys;
    const auto isText = [&](QLatin1StringView key) {
        return !nonEmptyString(element.value(key)).isNull();
    };
    return isText(name) && isNumber(element.value(size)) && isText(prefix) && isText(PluginKeys::link)
        && isText(version) && isNumber(element.value(hostVersion)) && isText(published);
}

// What the rules select, from the list as Qt reads it.
Selection selected(const QJsonArray &list)
{
    using namespace PluginKeys;
    QHash<QString, Record> chosen;
    for (const QJsonValue element : list) {
        const Record build = element.toObject();
        if (build.value(platform) != QJsonValue(mac) || !isComplete(build)) {
            continue;
        }
        const QString key = displayText(build.value(hostVersion)) + build.value(name).toString()
            + build.value(prefix).toString();
        const QString known = chosen.value(key).value(version).toString();
        if (!chosen.contains(key)
            || !std::is_gt(
                StandardVersionComparator::compareVersion(known, build.value(version).toString()))) {
            chosen.insert(key, build);
        }
    }
    Selection selection;
    for (const Record &build : std::as_const(chosen)) {
        selection.append({build.value(prefix).toString(), buildKey(build)});
    }
    std::sort(selection.begin(), selection.end());
    return selection;
}

void checkBuild(const QString &prefix, const ListedBuild &build)
{
    const Record record = build.definition->record;
    HOLDS(build.prefix == prefix && build.definition->key == buildKey(record));
    HOLDS(record.value(PluginKeys::name) == build.definition->name && !build.definition->name.isEmpty());
    HOLDS(record.value(PluginKeys::prefixes) == QJsonArray{prefix});
    HOLDS(!record.contains(PluginKeys::commandQueue) && !record.contains(PluginKeys::savedVersion));
}

Selection listed(const PluginList &list)
{
    Selection selection;
    for (const ListedPrefix &group : list.prefixes) {
        for (const ListedBuild &build : group.builds) {
            checkBuild(group.prefix, build);
            selection.append({group.prefix, build.definition->key});
        }
    }
    std::sort(selection.begin(), selection.end());
    return selection;
}

// Builds that are listed twice with different addresses change with each of them.
bool hasEachBuildOnce(const Selection &selection)
{
    QSet<QString> keys;
    for (const auto &[prefix, key] : selection) {
        keys.insert(key);
    }
    return keys.size() == selection.size();
}

QHash<QString, QStringList> keysOf(const DefinitionTables &tables)
{
    QHash<QString, QStringList> keys;
    for (auto entry = tables.byPrefix().cbegin(); entry != tables.byPrefix().cend(); ++entry) {
        for (const DefinitionPtr &definition : entry.value()) {
            HOLDS(tables.byBuild().value(definition->key) == definition && definition->places > 0);
            keys[entry.key()].append(definition->key);
        }
    }
    return keys;
}

// What the store holds after these changes.
QHash<QString, StateEntries> stored(const StateChanges &changes)
{
    QHash<QString, StateEntries> entries;
    for (const StateChange &change : changes) {
        if (change.value) {
            entries[change.key].insert(change.entry, *change.value);
        } else {
            entries[change.key].remove(change.entry);
        }
    }
    return entries;
}

} // namespace

// Two lists, one after the other.
void fuzz::check(const QByteArray &input)
{
    DefinitionTables tables;
    StateChanges changes;
    for (const QByteArray &json : parts(input, 2)) {
        const std::optional<PluginList> list = newestBuilds(json);
        if (!list) {
            continue;
        }
        const QJsonDocument read = QJsonDocument::fromJson(json);
        // Qt takes a mark of byte order away from the start of a text.
        const bool readsTheSame = !mayHoldHalfCharacters(json) && !json.contains("\xEF\xBB\xBF");
        const Selection selection = listed(*list); // before the tables write into its definitions
        HOLDS(!read.isArray() || !readsTheSame || selection == selected(read.array()));
        take(tables, *list);
        changes += tables.changes();
        take(tables, *list);
        HOLDS(tables.changes().isEmpty() || !hasEachBuildOnce(selection));
    }
    // The next start finds the same.
    const QHash<QString, StateEntries> kept = stored(changes);
    DefinitionTables again;
    HOLDS(again.load(kept.value(CatalogueKeys::pluginsData), kept.value(CatalogueKeys::pluginPrefixes)) == 0);
    HOLDS(keysOf(again) == keysOf(tables) && again.listed() == tables.listed());
    HOLDS(again.changes().isEmpty() && !again.hasPendingCommands());
}
