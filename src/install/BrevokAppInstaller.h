// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Tasks.h"
#include "helper/BrevokInstaller.h"
#include "install/RemovalRule.h"
#include "platform/RunningApplications.h"

#include <QDateTime>
#include <QPointer>

namespace brevok {

class BrevokAlertQueue;
class BrevokPackages;
class StateStore;

/// What became of carrying out the commands of one definition.
struct CommandResult {
    /// What the failure alert shows: errors handed back by calls that answered yes, and targets whose disk
    /// did not answer.
    QList<BrevokError> errors;
    /// Every failure: calls that answered no, and bundles that are not where they were said to be.
    QList<BrevokError> failures;
};

/// One question of canRemovePlugins().
struct RemovalQuestion {
    QString name; ///< of the plug-in
    QString pluginPath;
    QString prefix; ///< of the package it is to be removed for
};

/// The single object through which files of target applications are changed: keeps the privileged helper
/// current, falls back to doing the work itself, carries out queued commands, warns of running applications.
///
/// Made and used on the main thread, which it never blocks: file work runs in the background, one job at a
/// time, so that no two jobs touch one target folder at once. A command leaves its queue, and the queue is
/// stored, before the next command begins. The first job checks the helper (and may ask the user for rights),
/// so a program that installs nothing never asks.
/// Goes away when background work has ended, or waits for the main thread.
class BrevokAppInstaller final : public QObject, public BrevokInstaller {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokAppInstaller)

public:
    using Completion = std::function<void(const CommandResult &)>;
    using RemovalAnswers = std::function<void(const QList<bool> &)>;

    struct Collaborators {
        FileOperations &files;
        HelperTool &helper;
        RunningApplications &applications;
        StateStore &state;
        BrevokAlertQueue &alerts;
        BrevokPlugins &plugins;
        BrevokPackages &packages;
        QString workspaceFile; ///< the resource "Tolvane.xml" of this program
        quint32 user = 0; ///< numeric id that installed files belong to
        std::function<QDateTime()> now = &QDateTime::currentDateTimeUtc;
    };

    explicit BrevokAppInstaller(Collaborators collaborators, QObject *parent = nullptr);
    ~BrevokAppInstaller() override;

    /// The installer of this process, for the outermost code.
    static BrevokAppInstaller *appInstaller();

    /// Whether the helper was found or installed; false before the first job. Main thread.
    [[nodiscard]] bool valid() const { return m_valid; }
    /// What the fallback works with; any thread.
    [[nodiscard]] FileOperations &files() const { return m_with.files; }

    /// Makes good in the background what killed runs left in the folders @p folders, where plug-ins stand.
    void clearLeftovers(const QStringList &folders);

    /// Finds the helper, or installs or replaces it. Background only.
    [[nodiscard]] bool checkUpdateHelper();
    /// Who does the next file operations: the helper's proxy, or this object itself. Background only.
    [[nodiscard]] std::shared_ptr<InstallerOperations> installer();

    /// Carries out the install commands of the definition under the build key @p key. With
    /// @p skipRunningTargets those for a running application are dropped. @p done is called on the main
    /// thread, not at all when @p context is gone by then.
    void installPlugin(const QString &key, const Record &package, bool skipRunningTargets, QObject *context,
        Completion done);
    /// As installPlugin(), for the remove commands.
    void removePlugin(const QString &key, const Record &package, QObject *context, Completion done);

    /// Whether a plug-in may be removed without breaking another installed package. Background only.
    [[nodiscard]] bool canRemovePlugin(const QString &name, const QString &pluginPath, const QString &prefix);
    /// The same for several plug-ins, from the main thread; @p done gets the answers in order.
    void canRemovePlugins(const QList<RemovalQuestion> &questions, QObject *context, RemovalAnswers done);

    /// The short marketing name of a host version number.
    [[nodiscard]] static QString getVersionString(const QString &version);

private:
    enum class Action { Install, Remove };

    void addJob(Task job);
    // These hand over to the main thread and wait. They answer false or nothing when this object went away
    // meanwhile: the job must then stop without touching it.
    [[nodiscard]] bool onMainNow(const Task &work);
    [[nodiscard]] std::optional<Record> currentRecord(const QString &key);
    [[nodiscard]] std::optional<CatalogueSnapshot> catalogueOf(const QSet<QString> &plugins);
    [[nodiscard]] bool dequeue(const QString &key, const QJsonArray &command);
    void finishPackage(const Record &package);

    [[nodiscard]] CommandResult carryOutInstalls(
        const QString &key, const Record &package, bool skipRunningTargets);
    [[nodiscard]] CommandResult carryOutRemovals(const QString &key, const Record &package);
    void installArchive(InstallerOperations &operations, const QString &source, const QString &target,
        CommandResult &result) const;
    void installWorkspace(
        InstallerOperations &operations, const QString &folder, CommandResult &result) const;
    void remove(InstallerOperations &operations, const QString &path, CommandResult &result) const;

    void loadNotificationDates();
    [[nodiscard]] std::optional<RunningApplication> runningUnder(const QString &folder) const;
    [[nodiscard]] bool noteRunning(
        Action action, const RunningApplication &application, const QString &folder);
    void showRunning(Action action, const RunningApplication &application, const QString &marketingName);

    Collaborators m_with;
    QHash<QString, QDateTime> m_notificationDates; ///< by the folder of the application
    SerialQueue m_jobs;
    bool m_helperChecked = false;
    bool m_valid = false;
};

} // namespace brevok
