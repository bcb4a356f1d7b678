// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/InstallOperation.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/Texts.h"
#include "install/BrevokAppInstaller.h"
#include "install/CommandQueue.h"
#include "install/FailureReason.h"
#include "install/InstallPaths.h"
#include "targets/BrevokTargetApps.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

bool isDownloading(const Record &definition)
{
    return definition.value(PluginKeys::savedVersion).toString() == PluginKeys::downloading;
}

// Makes the folder that an archive is streamed into; nothing when that succeeded.
std::optional<BrevokError> prepareFolder(FileOperations &files, const QString &folder)
{
    std::optional<BrevokError> error;
    if (!files.createFolder(folder, &error)) {
        return error ? error : installerError(Texts::tr("The folder %1 could not be created.").arg(folder));
    }
    if (!files.isWritable(folder)) {
        return installerError(Texts::tr("The folder %1 is not writable.").arg(folder));
    }
    return std::nullopt;
}

} // namespace

QString archiveAddress(const QString &link)
{
    return link.startsWith(u"http://"_s) ? u"https"_s + link.sliced(4) : link;
}

InstallOperation::InstallOperation(
    InstallFlow &flow, InstallFlow::Collaborators &with, Record package, QString prefix, const Manner &manner)
    : PackageOperation(flow, with, std::move(package), std::move(prefix), manner)
{
}

InstallOperation::~InstallOperation() = default;

void InstallOperation::begin()
{
    inBackgroundThen(
        this,
        [known = definitions(), targets = m_with.targets.validTargets().values(),
            folder = m_with.dataFolder] { return planInstall(known, targets, folder, factsOfDisk()); },
        [this](const InstallPlan &plan) { applyPlan(plan); });
}

void InstallOperation::applyPlan(const InstallPlan &plan)
{
    m_plan = plan;
    m_outcome.planned = static_cast<int>(plan.installs.size());
    for (const BrevokError &refused : plan.refused) {
        addFailure({}, refused.description);
    }
    noteWhatIsCurrent();
    reportLater(plan.refused, m_package.value(PackageKeys::name).toString());
    if (m_manner.foreseen) {
        foresee(plannedTasks());
        return;
    }
    QStringList keys = plan.downloads;
    for (const PlannedInstall &planned : plan.installs) {
        keys.append(planned.key);
    }
    const auto record = [&] {
        for (const QString &key : plan.downloads) {
            if (const DefinitionPtr shared = definition(key)) {
                shared->record.remove(PluginKeys::savedVersion);
            }
        }
        for (const PlannedInstall &planned : plan.installs) {
            if (const DefinitionPtr shared = definition(planned.key)) {
                appendCommand(shared->record, installCommand(planned.pluginPath, planned.archivePath));
            }
        }
    };
    // Nothing is touched before a crash would leave the commands; where they cannot be stored, the store says
    // so.
    m_with.plugins.change(keys, record, this, [this](const auto & /*error*/) { installStored(); });
}

QList<CommandTask> InstallOperation::plannedTasks() const
{
    QList<CommandTask> tasks;
    for (const PlannedInstall &planned : m_plan.installs) {
        if (const DefinitionPtr shared = definition(planned.key)) {
            tasks.append({.plugin = shared->record.value(PluginKeys::name).toString(),
                .pluginPath = planned.pluginPath,
                .archive = planned.archivePath});
        }
    }
    return tasks;
}

void InstallOperation::noteWhatIsCurrent()
{
    for (const PlannedInstall &current : std::as_const(m_plan.current)) {
        if (const DefinitionPtr shared = definition(current.key)) {
            m_outcome.entries.append({.end = PluginOutcome::End::LeftAlone,
                .plugin = shared->record.value(PluginKeys::name).toString(),
                .target = targetFolder(current.pluginPath),
                .reason = Texts::tr("it is up to date")});
        }
    }
}

void InstallOperation::installStored()
{
    while (m_nextInstall < m_plan.installs.size()) {
        const QString key = m_plan.installs[m_nextInstall++].key;
        const DefinitionPtr shared = definition(key);
        if (shared && hasCommandQueue(shared->record) && shared->record.contains(PluginKeys::savedVersion)
            && !isDownloading(shared->record)) {
            install(key, [this, key, shared](const CommandResult &result) {
                reportLater(result.errors, displayText(shared->record));
                m_with.plugins.announceChange({key});
                installStored();
            });
            return;
        }
        m_with.plugins.announceChange({key});
    }
    startDownloads();
}

void InstallOperation::install(const QString &key, const CommandsDone &done)
{
    m_with.installer.installPlugin(
        key, m_package, m_manner, this, [this, key, done](const CommandResult &result) {
            m_outcome.entries += result.entries;
            if (result.archiveIsBad) {
                discardArchive(key, [done, result] { done(result); });
            } else {
                done(result);
            }
        });
}

// The next attempt fetches it anew.
void InstallOperation::discardArchive(const QString &key, const Task &done)
{
    const DefinitionPtr shared = definition(key);
    if (!shared) {
        done();
        return;
    }
    m_with.plugins.change({key}, [&] { shared->record.remove(PluginKeys::savedVersion); });
    const QString archive = archivePath(m_with.dataFolder, shared->record);
    logLine(u"The archive is thrown away: %1"_s.arg(archive));
    inBackgroundThen(
        this,
        [archive, &files = m_with.installer.files()] {
            std::optional<BrevokError> error;
            files.removeItem(archive, &error);
            return error;
        },
        [done](const std::optional<BrevokError> &error) {
            logError(error);
            done();
        });
}

void InstallOperation::startDownloads()
{
    m_openDownloads = m_plan.downloads.size();
    if (m_openDownloads == 0) {
        Q_EMIT finished();
        return;
    }
    for (const QString &key : std::as_const(m_plan.downloads)) {
        startDownload(key);
    }
}

void InstallOperation::startDownload(const QString &key)
{
    const DefinitionPtr shared = definition(key);
    Download download{.key = key};
    if (shared) {
        m_with.plugins.change({key},
            [&] { shared->record.insert(PluginKeys::savedVersion, QString(PluginKeys::downloading)); });
        download.name = shared->record.value(PluginKeys::name).toString();
        download.link = archiveAddress(shared->record.value(PluginKeys::link).toString());
        download.destination = archivePath(m_with.dataFolder, shared->record);
        download.expectedSize = integerValue(shared->record.value(PluginKeys::size));
        download.checksum = archiveChecksum(shared->record);
    }
    // Two versions of one plug-in share one archive path: they take turns.
    if (m_takenPlaces.contains(download.destination)) {
        m_waitingDownloads.append(key);
        return;
    }
    m_takenPlaces.insert(download.destination);
    const QStringList replaced = shared ? storedInPlaceOf(*shared) : QStringList();
    if (replaced.isEmpty()) {
        beginDownload(download);
        return;
    }
    const auto forgetThem = [&] {
        for (const QString &other : replaced) {
            definition(other)->record.remove(PluginKeys::savedVersion);
        }
    };
    // A crash must not leave the new archive under the version of the old one.
    m_with.plugins.change(
        replaced, forgetThem, this, [this, download](const auto & /*error*/) { beginDownload(download); });
}

// The other versions of the plug-in that are said to be stored where its archive goes.
QStringList InstallOperation::storedInPlaceOf(const PluginDefinition &build) const
{
    QStringList stored = m_with.plugins.buildsOf(build.name, build.hostVersion);
    stored.removeIf([this, &build](const QString &key) {
        const PackedRecord &record = definition(key)->record;
        return key == build.key || record.isPacked() || !record.contains(PluginKeys::savedVersion)
            || isDownloading(record);
    });
    return stored;
}

void InstallOperation::beginDownload(const Download &download)
{
    if (detailedLog()) {
        logLine(u"Downloading start %1"_s.arg(download.name));
    }
    inBackgroundThen(
        this,
        [folder = deletingLastPathComponent(download.destination), &files = m_with.installer.files()] {
            return prepareFolder(files, folder);
        },
        [this, download](const std::optional<BrevokError> &error) {
            if (error) {
                downloadFailed(download, error);
            } else if (!download.checksum) {
                downloadFailed(
                    download, installerError(Texts::tr("The checksum in the catalogue cannot be read.")));
            } else {
                fetch(download);
            }
        });
}

void InstallOperation::fetch(const Download &download)
{
    m_with.plugins.downloadPlugin(
        {.url = QUrl(download.link),
            .destination = download.destination,
            .expectedSize = download.expectedSize,
            .checksum = *download.checksum},
        this,
        [this, download](qint64 done, qint64 expected) {
            Q_EMIT m_flow.progress(m_prefix, download.name, done, expected);
        },
        [this, download](const DownloadResult &result) { downloadEnded(download, result); });
}

void InstallOperation::downloadEnded(const Download &download, const DownloadResult &result)
{
    if (!result.error && result.stored && result.received == download.expectedSize) {
        downloadStored(download);
    } else {
        downloadFailed(download, result.error);
    }
}

void InstallOperation::downloadFailed(const Download &download, const std::optional<BrevokError> &reason)
{
    logError(reason);
    const QString name = download.name.isEmpty() ? u"MISSING NAME"_s : download.name;
    BrevokError error = installerError(Texts::tr("Failed to download %1, from %2").arg(name, download.link));
    if (reason) {
        error.detailedErrors.append(*reason);
    }
    for (const PlannedInstall &planned : std::as_const(m_plan.installs)) {
        if (planned.key == download.key) {
            m_outcome.entries.append({.plugin = name,
                .target = targetFolder(planned.pluginPath),
                .reason = reason ? reasonOf(reason) : error.description,
                .detail = reason ? error.description : QString(),
                .everywhere = true});
        }
    }
    if (detailedLog()) {
        logLine(u"Downloading cleanup %1"_s.arg(name));
    }
    forget(download.key);
    reportLater({error}, name);
    cleanUp(download);
}

void InstallOperation::downloadStored(const Download &download)
{
    const DefinitionPtr shared = definition(download.key);
    if (!shared) {
        cleanUp(download);
        return;
    }
    m_with.plugins.change({download.key},
        [&] { shared->record.insert(PluginKeys::savedVersion, shared->record.value(PluginKeys::version)); });
    const auto installed = [this, download](const CommandResult &result) {
        if (detailedLog()) {
            logLine(u"Downloading OK %1"_s.arg(download.name));
        }
        // The alert names no plug-in here, as the name belongs to failed downloads.
        reportLater(result.errors, u"(null)"_s);
        cleanUp(download);
    };
    if (commandQueue(shared->record).isEmpty()) {
        installed({});
    } else {
        install(download.key, installed);
    }
}

void InstallOperation::cleanUp(const Download &download)
{
    const DefinitionPtr shared = definition(download.key);
    if (shared && isDownloading(shared->record)) {
        logLine(u"Cleanup 1: %1"_s.arg(download.name));
        forget(download.key);
    }
    if (shared && !commandQueue(shared->record).isEmpty()) {
        logLine(u"Cleanup 2: %1"_s.arg(download.name));
        forget(download.key);
    }
    m_with.plugins.announceChange({download.key});
    m_takenPlaces.remove(download.destination);
    const QStringList waiting = std::exchange(m_waitingDownloads, {});
    for (const QString &key : waiting) {
        startDownload(key);
    }
    if (--m_openDownloads == 0) {
        Q_EMIT finished();
    }
}

void InstallOperation::forget(const QString &key)
{
    m_with.plugins.change({key}, [&] {
        if (const DefinitionPtr shared = definition(key)) {
            shared->record.remove(PluginKeys::savedVersion);
            shared->record.remove(PluginKeys::commandQueue);
        }
    });
}

} // namespace brevok
