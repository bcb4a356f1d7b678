// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "install/CommandWork.h"
#include "install/InstallPlanning.h"
#include "install/PackageOperation.h"

namespace brevok {

/// Installs one package's plug-ins into every valid target: plans, installs what is stored already, downloads
/// the rest all at once and installs each as it arrives.
class InstallOperation final : public PackageOperation {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(InstallOperation)

public:
    InstallOperation(InstallFlow &flow, InstallFlow::Collaborators &with, Record package, QString prefix,
        const Manner &manner);
    ~InstallOperation() override;

    void begin() override;

private:
    /// One archive on its way.
    struct Download {
        QString key{}; ///< build key
        QString name{};
        QString link{}; ///< as it is fetched
        QString destination{};
        qint64 expectedSize = 0;
        std::optional<QByteArray> checksum = QByteArray(); ///< nothing when the catalogue's is none
    };
    using CommandsDone = std::function<void(const CommandResult &)>;

    void applyPlan(const InstallPlan &plan);
    [[nodiscard]] QList<CommandTask> plannedTasks() const;
    void installStored();
    void noteWhatIsCurrent();
    void install(const QString &key, const CommandsDone &done);
    void discardArchive(const QString &key, const Task &done);
    void startDownloads();
    void startDownload(const QString &key);
    [[nodiscard]] QStringList storedInPlaceOf(const PluginDefinition &build) const;
    void beginDownload(const Download &download);
    void fetch(const Download &download);
    void downloadEnded(const Download &download, const DownloadResult &result);
    void downloadFailed(const Download &download, const std::optional<BrevokError> &reason);
    void downloadStored(const Download &download);
    void cleanUp(const Download &download);
    void forget(const QString &key);

    InstallPlan m_plan;
    qsizetype m_nextInstall = 0;
    QStringList m_waitingDownloads; ///< build keys whose archive's place is still taken
    QSet<QString> m_takenPlaces; ///< destinations of running downloads
    qsizetype m_openDownloads = 0;
};

/// The address an archive is fetched from: plain HTTP is never used.
[[nodiscard]] QString archiveAddress(const QString &link);

} // namespace brevok
