// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "install/CommandRun.h"
#include "install/RunningTargetAlerts.h"

#include <QPointer>

#include <optional>

namespace brevok {

/// One question of canRemovePlugins().
struct RemovalQuestion {
    QString name; ///< of the plug-in
    QString pluginPath;
    QString prefix; ///< of the package it is to be removed for
};

/// The single object through which files of target applications are changed: keeps the privileged helper
/// current, does the work without it where that is possible, or has to be, carries out queued commands.
///
/// Main thread, which it never blocks: file work runs in the background on values, one job at a time, so that
/// no two jobs touch one target folder at once. The first job that needs the helper checks it (and may ask
/// the user for rights), so a program that only writes where its user may never asks.
class BrevokAppInstaller final : public QObject {
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

    /// Whether the helper was found or installed; false before anything needed it.
    [[nodiscard]] bool valid() const { return m_valid.value_or(false); }
    /// The file manager that the program's own operations stand on; any thread.
    [[nodiscard]] FileOperations &files() const { return m_with.files; }

    /// Makes good in the background what killed runs left in the targets @p targets.
    void clearLeftovers(const QStringList &targets);

    /// Checks the helper, the first time it is asked for, then calls @p answered while @p context lives.
    /// Unless it @p mayAsk the user for rights, only a helper that is there already is found.
    void checkUpdateHelper(
        QObject *context, const std::function<void(bool valid)> &answered, bool mayAsk = true);
    /// Who does file operations that need the helper: its proxy, or the fallback. Background, after
    /// checkUpdateHelper() has answered.
    [[nodiscard]] std::shared_ptr<InstallerOperations> installer() const;

    /// Carries out the install commands of the definition under the build key @p key; those for a running
    /// application are dropped when the @p manner says so. @p done is called later, not at all when @p
    /// context is gone by then.
    void installPlugin(
        const QString &key, const Record &package, const Manner &manner, QObject *context, Completion done);
    /// As installPlugin(), for the remove commands.
    void removePlugin(
        const QString &key, const Record &package, const Manner &manner, QObject *context, Completion done);

    /// Whether plug-ins may be removed without breaking another installed package; @p done gets the answers
    /// in order.
    void canRemovePlugins(
        const QList<RemovalQuestion> &questions, QObject *context, RemovalAnswers done, bool mayAsk = true);

    /// What would become of commands while running applications are skipped. Changes nothing.
    void foresee(const QList<CommandTask> &tasks, QObject *context,
        const std::function<void(const QList<PluginOutcome> &)> &done);

    /// The short marketing name of a host version number.
    [[nodiscard]] static QString getVersionString(const QString &version);

private:
    [[nodiscard]] HelperAccess accessOf(bool mayAsk) const;
    void addJob(Task begin);
    void nextJob();
    void jobEnded();
    void run(CommandRun::Order order, QObject *context, Completion done);
    void answerRemovals(const QList<RemovalQuestion> &questions, bool withHelper, const RemovalAnswers &done);

    Collaborators m_with;
    HelperAccess m_access;
    RunningTargetAlerts m_runningAlerts;
    QList<Task> m_jobs; ///< that wait; each calls jobEnded() at its end
    bool m_working = false;
    std::optional<bool> m_valid; ///< nothing before the check
};

} // namespace brevok
