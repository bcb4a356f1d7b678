// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/BrevokPackages.h"
#include "install/LastFailures.h"
#include "install/Manner.h"

#include <QObject>

namespace brevok {

class BrevokAppInstaller;
class PackageOperation;

/// Carries out what the user asks of a package: plans, downloads, installs, removes, reports. Called on the
/// main thread, returns at once; planning and file work run in the background on snapshots, every change of a
/// definition is made on the main thread and stored at once, so that a crash leaves what the question at the
/// next start needs. Operations on the same prefix, and on prefixes that share a definition, wait for each
/// other; others run side by side.
class InstallFlow final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(InstallFlow)

public:
    /// Called once on the main thread when the operation has ended, whatever became of it.
    using Completion = std::function<void(const InstallOutcome &)>;

    struct Collaborators {
        BrevokPlugins &plugins;
        BrevokPackages &packages;
        BrevokTargetApps &targets;
        BrevokAppInstaller &installer;
        BrevokAlertQueue &alerts;
        QString dataFolder;
    };

    explicit InstallFlow(Collaborators collaborators, QObject *parent = nullptr);
    ~InstallFlow() override;

    /// For every package with that prefix; @p done after the last one, and also when no package has it.
    void installWithPrefix(const QString &prefix, bool skipRunningTargets, const Completion &done = {});
    void installWithPackage(
        const Record &package, const QString &prefix, bool skipRunningTargets, const Completion &done = {});
    void uninstallWithPrefix(const QString &prefix, const Completion &done = {});
    /// Installs or removes every package with that prefix in some other manner than a person's.
    void installWithPrefix(const QString &prefix, const Manner &manner, const Completion &done);
    void uninstallWithPrefix(const QString &prefix, const Manner &manner, const Completion &done);
    void uninstallWithPackage(const Record &package, const QString &prefix, const Completion &done = {});

    /// What failed lately, to be shown with the packages.
    [[nodiscard]] const LastFailures &lastFailures() const { return m_lastFailures; }

    /// Whether any operation runs or waits.
    [[nodiscard]] bool isBusy() const { return !m_waiting.isEmpty() || !m_running.isEmpty(); }

    /// Logs the errors and shows the install failure alert; nothing for an empty list. @p plugin is the
    /// plug-in's designation as it is to be shown.
    void reportError(const QList<BrevokError> &errors, const QString &plugin);
    /// One such alert for all that @p outcome has still to tell, which the log has.
    void tellTogether(const InstallOutcome &outcome);

Q_SIGNALS:
    /// The last operation ended.
    void becameIdle();
    /// Bytes done of bytes expected of one plug-in's archive while it is downloaded.
    void progress(const QString &prefix, const QString &plugin, qint64 done, qint64 expected);

private:
    using Operations = QList<PackageOperation *>;
    using Maker = std::function<PackageOperation *(const Record &package)>;

    void showFailure(const FailureReport &report);
    void forPackages(const QString &prefix, const Maker &make, const Completion &done);
    void enqueue(PackageOperation *operation, const Completion &done);
    void startWhatCan();
    void ended(PackageOperation *operation, const Completion &done);
    [[nodiscard]] InstallOutcome withTargetNames(InstallOutcome outcome) const;
    [[nodiscard]] QSet<QString> whatItTouches(const PackageOperation &operation) const;

    Collaborators m_with;
    LastFailures m_lastFailures;
    Operations m_waiting;
    QHash<PackageOperation *, QSet<QString>> m_running; ///< with what each touches
};

} // namespace brevok
