// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/PackageStatus.h"
#include "ui/panel/PackageRows.h"

#include <QObject>
#include <QSet>

#include <optional>

namespace brevok {

class BrevokAlertQueue;
class BrevokPackages;
class InstallFlow;
class UpdateRun;

/// What goes on with packages, as far as their rows show it: operations that the panel started, and the bytes
/// of downloads. Main thread.
class PackageActivity final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PackageActivity)

public:
    struct Collaborators {
        InstallFlow &flow;
        BrevokPackages &packages;
        BrevokAlertQueue &alerts;
        UpdateRun &updates;
    };

    explicit PackageActivity(Collaborators collaborators, QObject *parent = nullptr);
    ~PackageActivity() override;

    /// Installs or updates the row's package in all targets, running ones included. Returns at once.
    void install(const PackageRow &row);
    /// Removes it from all targets. Returns at once.
    void remove(const PackageRow &row);
    /// The same, when the user says so.
    void askToRemove(const PackageRow &row);

    /// @p status, or InProgress from the press of a row's button until the status tells the result.
    [[nodiscard]] PackageStatus shownStatus(const QString &prefix, PackageStatus status) const;
    /// The bytes of a package's downloads; nothing while there are none.
    [[nodiscard]] std::optional<DownloadProgress> progress(const QString &prefix) const;
    /// Takes note of the statuses: what is not in progress downloads nothing any more.
    void statusesChanged();

Q_SIGNALS:
    /// Another shownStatus().
    void activityChanged();
    /// Another progress().
    void progressChanged(const QString &prefix);

private:
    /// One archive; builds of one plug-in for several hosts have one name, but hardly one length.
    using Archive = std::pair<QString, qint64>;

    void begin(const QString &prefix);
    void end(const QString &prefix);
    void forgetEnded();
    void noteProgress(const QString &prefix, const QString &plugin, qint64 done, qint64 expected);

    Collaborators m_with;
    QHash<QString, int> m_running; ///< prefix to operations that the panel started
    QSet<QString> m_ending; ///< ended, and their status is not known yet
    QHash<QString, QHash<Archive, qint64>> m_downloads;
};

} // namespace brevok
