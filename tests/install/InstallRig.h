// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "alerts/BrevokAlertQueue.h"
#include "catalogue/BrevokPackages.h"
#include "FakeHelperTool.h"
#include "install/BrevokAppInstaller.h"
#include "install/InstallFlow.h"
#include "platform/linux/files/LinuxFileOperations.h"
#include "support/FakePlatform.h"
#include "support/FakeServiceClient.h"
#include "support/LogCapture.h"
#include "support/SampleBundles.h"
#include "support/ScratchStateStore.h"
#include "support/ScriptedAlertPresenter.h"
#include "support/StoredCatalogue.h"
#include "support/ZipWriter.h"
#include "targets/BrevokTargetApps.h"

#include <QDir>
#include <QJsonArray>
#include <QTemporaryDir>

#include <algorithm>

#include <unistd.h>

namespace brevok::testing {

/// The file operations of a user who may not write in some places; the tests' own user may write anywhere.
class RestrictedFiles final : public LinuxFileOperations {
public:
    QStringList forbidden; ///< with what is below; set before anything is asked

    [[nodiscard]] bool isWritable(const QString &path) const override
    {
        return allowed(path) && LinuxFileOperations::isWritable(path);
    }
    [[nodiscard]] bool isDeletable(const QString &path) const override
    {
        return allowed(path) && LinuxFileOperations::isDeletable(path);
    }

private:
    [[nodiscard]] bool allowed(const QString &path) const
    {
        return std::none_of(forbidden.cbegin(), forbidden.cend(),
            [whole = QDir::cleanPath(path)](const QString &place) { return whole.startsWith(place); });
    }
};

/// The whole of installing over real files; the service, the helper, the user and other programs are the
/// test's.
struct InstallRig {
    Q_DISABLE_COPY_MOVE(InstallRig)

    /// @p left is what the last run of the program stored.
    explicit InstallRig(const StateChanges &left = {})
        : isFilled(fill(left))
    {
        plugins.start();
        packages.start();
        writeFile(workspace(), "<workspace/>");
    }
    ~InstallRig() { finishBackgroundWork(10000); }

    QTemporaryDir folder;
    QDateTime clock = QDateTime::currentDateTimeUtc();
    LogCapture log;
    ScratchStateStore scratch;
    StateStore &state = scratch.store;
    bool isFilled; ///< stands here as the catalogue below reads the state when it is made
    FakeServiceClient service;
    ScriptedAlertPresenter presenter;
    RecordingPanel panel;
    BrevokAlertQueue alerts{presenter, panel};
    FakeApplicationSearch search;
    LinuxFileOperations files; ///< of the helper
    RestrictedFiles ownFiles; ///< of the program itself
    FakeHelperTool helper;
    FakeRunningApplications applications;
    BrevokTargetApps targets{state, search};
    BrevokPlugins plugins{state, service, alerts};
    BrevokPackages packages{{state, service, alerts, plugins, targets, dataFolder()}};
    BrevokAppInstaller installer{
        {ownFiles, helper, applications, state, alerts, plugins, packages, workspace(), ::getuid(), [this] {
             return clock;
         }}};
    InstallFlow flow{{plugins, packages, targets, installer, alerts, dataFolder()}};

    [[nodiscard]] bool fill(const StateChanges &left)
    {
        state.commit(left);
        return true;
    }
    /// A helper that answers, for targets that the user may not write himself.
    std::shared_ptr<HelperProxy> needHelper()
    {
        auto proxy = std::make_shared<HelperProxy>(files, 15);
        helper.state = {true, proxy, true};
        ownFiles.forbidden = {folder.filePath(QStringLiteral("Apps"))};
        return proxy;
    }
    [[nodiscard]] QString dataFolder() const { return folder.filePath(QStringLiteral("data")); }
    [[nodiscard]] QString workspace() const { return folder.filePath(QStringLiteral("Tolvane.xml")); }

    /// A host application on disk as an enabled target; returns its path.
    QString addTarget(const QString &name, const QString &version)
    {
        QString path = writeHostApplication(
            folder.filePath(QStringLiteral("Apps")), name, version + QStringLiteral("00"));
        targets.insertTarget(path, QStringLiteral("InDesign"), version);
        return path;
    }
    /// A build as the service lists it, for a host version such as 140.
    static QJsonObject build(const QString &prefix, const QString &name, int host,
        const QString &version = QStringLiteral("2.0"), qint64 size = 0)
    {
        return {{PluginKeys::name, name}, {PluginKeys::prefix, prefix}, {PluginKeys::version, version},
            {PluginKeys::hostVersion, host}, {PluginKeys::platform, QStringLiteral("Mac")},
            {PluginKeys::link, QStringLiteral("http://host/%1-%2.zip").arg(name).arg(host)},
            {PluginKeys::published, QStringLiteral("now")},
            {PluginKeys::size, size > 0 ? size : archiveOf(name, host, version).size()}};
    }
    static QByteArray archiveOf(const QString &name, int host, const QString &version = QStringLiteral("2.0"))
    {
        return pluginArchive(name.toUtf8(),
            propertyList({{QStringLiteral("CFBundleShortVersionString"), version},
                {QStringLiteral("TolvaneHostAppShortVersion"),
                    QStringLiteral("%1.%2").arg(host / 10).arg(host % 10)}}),
            "code");
    }
    /// The same, of the same length, with another content than its checksums tell.
    static QByteArray damagedArchiveOf(const QString &name, int host)
    {
        QByteArray archive = archiveOf(name, host);
        const qsizetype content = archive.indexOf("Info.plist") + 40;
        archive[content] = static_cast<char>(~archive.at(content));
        return archive;
    }
    void addPackage(const QString &name, const QString &prefix)
    {
        packages.updateWithArray({QJsonObject{{PackageKeys::name, name}, {PackageKeys::prefix, prefix},
            {PackageKeys::version, QStringLiteral("1")}, {PackageKeys::published, QStringLiteral("now")},
            {PackageKeys::platform, QStringLiteral("Mac")}}});
    }
    [[nodiscard]] Record package(const QString &prefix) const
    {
        return packages.packagesWithPrefix(prefix).value(0);
    }
    [[nodiscard]] Record record(const QString &key) const
    {
        const DefinitionPtr definition = plugins.definition(key);
        return definition ? definition->record.record() : Record();
    }
    /// The definition as the next start of the program would find it.
    [[nodiscard]] Record stored(const QString &prefix, qsizetype index)
    {
        return definitionsIn(state, prefix).at(index).toObject();
    }
    /// Answers the oldest download with @p body as the service client does.
    void answerDownload(const QByteArray &body)
    {
        const auto request = service.downloads.takeFirst();
        const bool whole = body.size() == request.expectedSize;
        const bool stored = whole && writeFile(request.destination, body);
        request.handler({body.size(), stored,
            whole ? std::nullopt
                  : std::optional(BrevokError{.description = QStringLiteral("wrong length")})});
    }
};

} // namespace brevok::testing
