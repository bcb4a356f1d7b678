// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/CatalogueKeys.h"
#include "catalogue/PluginDefinition.h"
#include "platform/StateStore.h"

#include <QJsonArray>

namespace brevok::testing {

using namespace Qt::StringLiterals;

/// What an earlier run stored of plug-in definitions: @p lists is prefix to list of definitions. What is no
/// definition is listed, and missing.
inline StateChanges storedDefinitions(const QJsonObject &lists)
{
    StateChanges changes;
    for (auto list = lists.constBegin(); list != lists.constEnd(); ++list) {
        QJsonArray keys;
        const QJsonArray elements = list.value().toArray();
        for (const QJsonValue element : elements) {
            const QString key =
                element.isObject() ? buildKey(element.toObject()) : u"missing %1"_s.arg(keys.size());
            keys.append(key);
            if (element.isObject()) {
                changes.append({CatalogueKeys::pluginsData, key, element.toObject()});
            }
        }
        changes.append({CatalogueKeys::pluginPrefixes, list.key(),
            Record{{u"Builds"_s, list.value().isArray() ? QJsonValue(keys) : QJsonValue(list.value())}}});
    }
    return changes;
}

/// The definitions of a prefix, as the next start would find them.
inline QJsonArray definitionsIn(StateStore &state, const QString &prefix)
{
    const StateEntries builds = state.entries(CatalogueKeys::pluginsData);
    const Record listed = state.entries(CatalogueKeys::pluginPrefixes).value(prefix);
    QJsonArray definitions;
    const QJsonArray keys = listed.value(QLatin1StringView("Builds")).toArray();
    for (const QJsonValue key : keys) {
        definitions.append(builds.value(key.toString()));
    }
    return definitions;
}

} // namespace brevok::testing
