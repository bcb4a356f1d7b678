// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/EarlierKeys.h"
#include "app/StateTakeOver.h"
#include "catalogue/CatalogueKeys.h"
#include "catalogue/DefinitionTables.h"
#include "fuzz/Fuzz.h"
#include "platform/linux/files/SettingsText.h"
#include "platform/linux/files/SqliteStateStore.h"
#include "support/Archived.h"
#include "support/MemorySettingsStore.h"
#include "targets/BrevokTargetApps.h"

#include <QCoreApplication>
#include <QDir>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

// A line KEY=VALUE each; JSON stands for its archive, all else is as the settings file has it.
QVariantMap settingsIn(const QByteArray &lines)
{
    QVariantMap values;
    for (const QByteArray &line : lines.split('\n')) {
        const QByteArray value = line.sliced(line.indexOf('=') + 1);
        const QJsonDocument json = QJsonDocument::fromJson(value);
        if (json.isNull()) {
            values.insert(settingsValues(line).value_or(QVariantMap()));
        } else {
            const QString key = QString::fromUtf8(line.first(line.size() - value.size())).chopped(1);
            values.insert(key, testing::archived(json.isArray() ? QJsonValue(json.array()) : json.object()));
        }
    }
    return values;
}

void takeOver(SettingsStore &settings, StateStore &state)
{
    moveKeysOfEarlierVersions(settings);
    const StateTakeOver takeOver(settings, state);
    bool stored = false;
    state.commit({}, &state, [&](const auto &error) { stored = !error; });
    while (!stored) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

} // namespace

void fuzz::check(const QByteArray &input)
{
    const QString folder = scratchFolder() + u"/state"_s;
    HOLDS(QDir(folder).removeRecursively());
    const QVariantMap before = settingsIn(input);
    testing::MemorySettingsStore settings;
    settings.values = before;
    SqliteStateStore state(folder + u"/state.sqlite"_s);
    takeOver(settings, state);
    for (const char *moved : {"startAtLogin", "sessionData", "sessionVersion", "targets", "packages",
             "plugins", "OrlecSessionData", "OrlecTargetsData", "OrlecPackagesData", "OrlecPluginsData"}) {
        HOLDS(!settings.values.contains(QString::fromLatin1(moved)));
    }
    for (auto value = before.cbegin(); value != before.cend(); ++value) {
        const bool isChoice = value.key().startsWith(u"SUEnable"_s) || value.key() == u"OrlecAutoUpdate"_s;
        HOLDS(!isChoice || settings.values.value(value.key()) == *value);
    }
    // The programs find nothing there that they cannot use.
    DefinitionTables tables;
    const StateEntries builds = state.entries(CatalogueKeys::pluginsData);
    HOLDS(tables.load(builds, state.entries(CatalogueKeys::pluginPrefixes)) == 0);
    HOLDS(state.entries(u"OrlecSessionData"_s).size() <= 1);
    // What comes back with an old file, and was taken already, changes nothing.
    settings.values = before;
    const StateEntries targets = state.entries(TargetSettings::data);
    takeOver(settings, state);
    HOLDS(state.entries(TargetSettings::data) == targets);
    HOLDS(state.entries(CatalogueKeys::pluginsData) == builds);
}
