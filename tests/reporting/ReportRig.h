// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "../catalogue/PackagesFixture.h"
#include "../service/ServiceStage.h"
#include "foundation/Tasks.h"
#include "platform/PropertyLists.h"
#include "reporting/BugReporter.h"
#include "service/Connectivity.h"
#include "support/FakeRouteLookup.h"
#include "support/LogCapture.h"

#include <QJsonArray>

namespace brevok::testing {

/// What reports are made of, on real files, and the service they go to.
struct ReportRig : ServiceStage, PackagesFixture {
    Q_DISABLE_COPY_MOVE(ReportRig)

    inline static const QString homePath = QStringLiteral("/");
    inline static const QString reportPath = QStringLiteral("/api/machine/report");
    inline static const QString usagePath = QStringLiteral("/api/stats/plugins");

    ReportRig()
    {
        QDir().mkpath(logs());
        server.on(QString(), Response::ok("here"));
        server.on(homePath, Response::ok("here"));
        plugins.updateWithArray({build(QStringLiteral("Alpha"), QStringLiteral("0xA")),
            build(QStringLiteral("Beta"), QStringLiteral("0xB"))});
        packages->updateWithArray({package(QStringLiteral("Alpha"), QStringLiteral("0xA"))});
    }
    ~ReportRig() { finishBackgroundWork(30000); }

    LogCapture log;
    FakeRouteLookup routes;
    Connectivity connectivity{network, routes};
    MainBundle bundle = makeBundle();
    BugReporter reporter{{network, connectivity, &start(), &plugins, &targets, [this] { return sessionId; },
        bundle, {.settingsFile = {}, .applicationSupport = {}, .library = folder.path(), .autostart = {}}}};

    [[nodiscard]] QString logs() const { return folder.filePath(QStringLiteral("Logs")); }
    [[nodiscard]] QList<Request> arrived(const QString &path) const { return server.requests(path); }
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
