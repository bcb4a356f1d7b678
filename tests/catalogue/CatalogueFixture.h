// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/BrevokAlertQueue.h"
#include "catalogue/BrevokPlugins.h"
#include "catalogue/CatalogueKeys.h"
#include "support/FakeServiceClient.h"
#include "support/ScratchStateStore.h"
#include "support/ScriptedAlertPresenter.h"
#include "support/StoredCatalogue.h"

#include <QJsonDocument>
#include <QTest>

namespace brevok::testing {

inline Record build(const QString &name, const QString &prefix = QStringLiteral("P"),
    const QString &version = QStringLiteral("1"), const QJsonValue &host = 140,
    const QString &link = QStringLiteral("https://x/a.zip"))
{
    return {{QStringLiteral("Name"), name}, {QStringLiteral("Prefix"), prefix},
        {QStringLiteral("Version"), version}, {QStringLiteral("HostVersion"), host},
        {QStringLiteral("Size"), 10}, {QStringLiteral("Link"), link},
        {QStringLiteral("Published"), QStringLiteral("2024-01-01")},
        {QStringLiteral("Platform"), QStringLiteral("Mac")}};
}
inline Record package(
    const QString &name, const QString &prefix = QStringLiteral("P"), const QString &icon = {})
{
    Record record{{QStringLiteral("Name"), name}, {QStringLiteral("Prefix"), prefix},
        {QStringLiteral("Version"), QStringLiteral("1.0")},
        {QStringLiteral("Published"), QStringLiteral("2024-01-01")},
        {QStringLiteral("Platform"), QStringLiteral("Mac")}};
    if (!icon.isEmpty()) {
        record.insert(QStringLiteral("Icon"), icon);
    }
    return record;
}
inline Record with(Record record, const QString &key, const QJsonValue &value)
{
    if (value.isUndefined()) {
        record.remove(key);
    } else {
        record.insert(key, value);
    }
    return record;
}
/// The keys of the builds under a prefix, in order.
inline QStringList buildsOf(const BrevokPlugins &plugins, const QString &prefix)
{
    QStringList lines;
    for (const DefinitionPtr &definition : plugins.pluginIndex().value(prefix)) {
        lines << buildKey(definition->record);
    }
    return lines;
}
/// A queue of one command.
inline QJsonArray queueOf(const QString &path)
{
    return {QJsonArray{QStringLiteral("removeStart"), path}};
}
inline ServiceReply good(const QJsonArray &list)
{
    return {.status = 200, .body = QJsonDocument(list).toJson()};
}

/// What the catalogue works with, and lists to feed it.
struct CatalogueFixture {
    ScratchStateStore scratch;
    StateStore &state = scratch.store;
    FakeServiceClient service;
    ScriptedAlertPresenter presenter;
    RecordingPanel panel;
    BrevokAlertQueue alerts{presenter, panel};

    /// Stores packages as an earlier run would have.
    void storePackages(const QJsonObject &packages)
    {
        for (auto package = packages.constBegin(); package != packages.constEnd(); ++package) {
            state.commit({{CatalogueKeys::packagesData, package.key(), package.value().toObject()}});
        }
    }

    /// Waits until everything is stored.
    [[nodiscard]] bool flushed()
    {
        bool stored = false;
        state.commit({}, &waiting, [&stored](const auto &error) { stored = !error; });
        return QTest::qWaitFor([&stored] { return stored; }, 30000);
    }
    QObject waiting;
};

/// With the plug-ins as the program starts them.
struct PluginsFixture : CatalogueFixture {
    PluginsFixture() { plugins.start(); }
    /// Says of the build @p key what happened to it here.
    void set(const QString &key, const QString &name, const QJsonValue &value)
    {
        plugins.change({key}, [&] { plugins.definition(key)->record.insert(name, value); });
    }
    BrevokPlugins plugins{state, service, alerts};
};

} // namespace brevok::testing
