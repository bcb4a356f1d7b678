// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/privileges/PackageKitInstaller.h"
#include "service/HttpServiceClient.h"
#include "service/NetworkFactory.h"
#include "support/Folders.h"
#include "support/LogCapture.h"
#include "support/MemorySettingsStore.h"
#include "support/SampleFeed.h"
#include "support/SampleMaker.h"
#include "support/ScratchStateStore.h"
#include "support/servers/FaultServer.h"
#include "updates/BrevokSelfUpdater.h"

#include <QTemporaryDir>
#include <QTest>

namespace brevok::testing {

/// The updater against a server that the test scripts.
struct UpdaterStage {
    static QString feedPath() { return QStringLiteral("/base/appcast.xml"); }
    static QString packagePath() { return QStringLiteral("/files/brevok.deb"); }

    explicit UpdaterStage(AutomaticChecks::Times checkTimes = {}, SoftwareInstaller *system = nullptr)
        : network({.baseUrl = server.url(QStringLiteral("/base")),
            .extraAuthorities = TestCertificates::shared().authorities(),
            .reachabilityHost = {},
            .requestTimeoutMs = 30000})
        , times(checkTimes)
        , installs(system != nullptr ? *system : installer)
    {
        updater = makeUpdater();
    }

    [[nodiscard]] std::unique_ptr<BrevokSelfUpdater> makeUpdater(const QByteArray &key)
    {
        return std::make_unique<BrevokSelfUpdater>(BrevokSelfUpdater::Collaborators{
            .settings = settings,
            .state = state.store,
            .service = service,
            .installer = installs,
            .source = {.feed = server.url(feedPath()), .publicKey = key},
            .folder = folder(),
            .version = QStringLiteral("100"),
            .shownVersion = QStringLiteral("1.0.0"),
            .systemVersion = QStringLiteral("12"),
            .times = times,
        });
    }
    [[nodiscard]] std::unique_ptr<BrevokSelfUpdater> makeUpdater() { return makeUpdater(maker.publicKey); }

    void serve(const QByteArray &items) { server.on(feedPath(), Response::ok(sampleFeed(items))); }

    /// The feed and the package of one update.
    void servePackage(const QByteArray &body, const QByteArray &signature, qint64 length)
    {
        serve(item(signature, length).xml());
        server.on(packagePath(), Response::ok(body));
    }
    [[nodiscard]] SampleItem item(const QByteArray &signature, qint64 length) const
    {
        return {.version = "101",
            .url = server.url(packagePath()).toEncoded(),
            .length = QByteArray::number(length),
            .signature = signature};
    }
    void serveGoodPackage() { servePackage(package, maker.sign(package), package.size()); }

    /// Asks as a user does, and waits for what comes of it.
    UpdateState::Phase check()
    {
        updater->checkForUpdates();
        return ended({UpdateState::Phase::Checking});
    }
    UpdateState::Phase install()
    {
        using Phase = UpdateState::Phase;
        updater->installUpdate();
        return ended({Phase::Downloading, Phase::Verifying, Phase::Installing});
    }
    [[nodiscard]] UpdateState::Phase ended(const QList<UpdateState::Phase> &working) const
    {
        return QTest::qWaitFor([&] { return !working.contains(phase()); }, 30000) ? phase() : working.first();
    }
    [[nodiscard]] UpdateState::Phase phase() const { return updater->state().phase; }
    [[nodiscard]] QString error() const
    {
        return updater->state().error ? updater->state().error->description : QString();
    }
    [[nodiscard]] QString folder() const { return scratch.filePath(QStringLiteral("data/Updates")); }
    [[nodiscard]] QStringList leftFiles() const { return entries(folder()); }

    LogCapture log;
    QTemporaryDir scratch;
    SampleMaker maker;
    QByteArray package = samplePackage();
    FaultServer server;
    NetworkFactory network;
    MemorySettingsStore settings;
    ScratchStateStore state;
    bool reachable = true;
    HttpServiceClient service{network, [] { return QStringLiteral("secret session"); },
        [this] {
            return reachable;
        }};
    PackageKitInstaller installer;
    AutomaticChecks::Times times;
    SoftwareInstaller &installs;
    std::unique_ptr<BrevokSelfUpdater> updater;
};

} // namespace brevok::testing
