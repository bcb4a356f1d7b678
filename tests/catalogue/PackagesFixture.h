// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/BrevokPackages.h"
#include "CatalogueFixture.h"
#include "support/FakePlatform.h"
#include "support/SampleBundles.h"
#include "targets/BrevokTargetApps.h"

#include <QTemporaryDir>

namespace brevok::testing {

/// The packages with all that they need, in scratch folders.
struct PackagesFixture : CatalogueFixture {
    QTemporaryDir folder;
    FakeApplicationSearch search;
    BrevokTargetApps targets{state, search};
    BrevokPlugins plugins{state, service, alerts};
    QString dataFolder = folder.path() + QStringLiteral("/data");
    std::unique_ptr<BrevokPackages> packages;

    BrevokPackages &start()
    {
        packages.reset();
        service.lists.clear();
        packages = std::make_unique<BrevokPackages>(
            BrevokPackages::Collaborators{state, service, alerts, plugins, targets, dataFolder});
        packages->start();
        return *packages;
    }
    void answerFile(int status, const QByteArray &body, std::optional<BrevokError> error = {})
    {
        const FakeServiceClient::FileRequest request = service.files.takeFirst();
        request.handler({.status = status, .body = body, .error = std::move(error)});
    }
    [[nodiscard]] QStringList names() const
    {
        QStringList names;
        for (const Record &record : packages->packageRecords()) {
            names << record.value(PackageKeys::name).toString();
        }
        return names;
    }
    [[nodiscard]] QString iconPath(const QString &name)
    {
        const Record record = state.entries(CatalogueKeys::packagesData).value(name);
        return record.value(PackageKeys::iconPath).toString();
    }
    /// A target with version 140 in which the plug-in @p name is installed.
    QString target(const QString &name, const QString &version)
    {
        QString path = folder.path() + QStringLiteral("/App/Plug-Ins/");
        writeInstalledPlugin(path, name, version, QStringLiteral("14.0"));
        targets.insertTarget(path, QStringLiteral("InDesign"), QStringLiteral("140"));
        return path;
    }
};

} // namespace brevok::testing
