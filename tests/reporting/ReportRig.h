// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "../service/ServiceStage.h"
#include "alerts/BrevokAlertQueue.h"
#include "catalogue/BrevokPackages.h"
#include "foundation/Tasks.h"
#include "platform/PropertyLists.h"
#include "reporting/BugReporter.h"
#include "service/Connectivity.h"
#include "support/FakePlatform.h"
#include "support/FakeRouteLookup.h"
#include "support/FakeServiceClient.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"
#include "support/ScratchStateStore.h"
#include "support/ScriptedAlertPresenter.h"
#include "targets/BrevokTargetApps.h"

#include <QJsonArray>
#include <QTemporaryDir>

namespace brevok::testing {

/// What reports are made of, on real files, and the service they go to.
struct ReportRig : ServiceStage {
    Q_DISABLE_COPY_MOVE(ReportRig)

    inline static const QString homePath = QStringLiteral("/");
    inline static const QString reportPath = QStringLiteral("/api/machine/report");
    inline static const QString usagePath = QStringLiteral("/api/stats/plugins");

    ReportRig()
    {
        QDir().mkpath(logs());
        server.on(QString(), Response::ok("here"));
        server.on(homePath, Response::ok("here"));
        plugins.updateWithArray({definition(QStringLiteral("Alpha"), QStringLiteral("0xA")),
            definition(QStringLiteral("Beta"), QStringLiteral("0xB"))});
        packages.updateWithArray({QJsonObject{{PackageKeys::name, QStringLiteral("Alpha")},
            {PackageKeys::prefix, QStringLiteral("0xA")}, {PackageKeys::version, QStringLiteral("1")},
            {PackageKeys::published, QStringLiteral("now")},
            {PackageKeys::platform, QStringLiteral("Mac")}}});
    }
    ~ReportRig() { finishBackgroundWork(30000); }

    QTemporaryDir folder;
    LogCapture log;
    ScratchStateStore scratch;
    StateStore &state = scratch.store;
    FakeServiceClient service;
    ScriptedAlertPresenter presenter;
    RecordingPanel panel;
    BrevokAlertQueue alerts{presenter, panel};
    FakeApplicationSearch search;
    FakeRouteLookup routes;
    Connectivity connectivity{network, routes};
    BrevokTargetApps targets{state, search};
    BrevokPlugins plugins{state, service, alerts};
    BrevokPackages packages{
        {state, service, alerts, plugins, targets, folder.filePath(QStringLiteral("data")), &looksLikeImage}};
    MainBundle bundle = makeBundle();
    BugReporter reporter{{network, connectivity, &packages, &plugins, &targets, [this] { return sessionId; },
        bundle, {.settingsFile = {}, .applicationSupport = {}, .library = folder.path(), .autostart = {}}}};

    [[nodiscard]] QString logs() const { return folder.filePath(QStringLiteral("Logs")); }
    [[nodiscard]] QList<Request> arrived(const QString &path) const { return server.requests(path); }
    static QJsonObject definition(const QString &name, const QString &prefix)
    {
        return {{PluginKeys::name, name}, {PluginKeys::prefix, prefix},
            {PluginKeys::version, QStringLiteral("2.0")}, {PluginKeys::hostVersion, 140},
            {PluginKeys::size, 10}, {PluginKeys::link, QStringLiteral("https://x/a.zip")},
            {PluginKeys::published, QStringLiteral("now")}, {PluginKeys::platform, QStringLiteral("Mac")}};
    }
    /// A target folder that may hold plug-ins.
    QString addTarget(const QString &name, const QString &version)
    {
        QString path = folder.filePath(name) + QStringLiteral("/Plug-Ins/");
        QDir().mkpath(path);
        targets.insertTarget(path, QStringLiteral("Adobe InDesign"), version);
        return path;
    }

private:
    [[nodiscard]] MainBundle makeBundle() const
    {
        const QString resources = folder.filePath(QStringLiteral("resources"));
        writeFile(resources + QStringLiteral("/Info.plist"),
            propertyList({{QStringLiteral("CFBundleVersion"), QStringLiteral("7")},
                {QStringLiteral("CFBundleShortVersionString"), QStringLiteral("1.2")}}));
        return {QStringLiteral("/nowhere/tolvane-brevok"), resources};
    }
};

} // namespace brevok::testing
