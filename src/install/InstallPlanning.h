// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"
#include "foundation/Record.h"

#include <QHash>
#include <QList>
#include <QStringList>

#include <functional>
#include <optional>

namespace brevok {

class Pulse;

/// What the planning wants to know of the disk. Values only, as a question may outlive whoever asked.
struct InstallFacts {
    std::function<bool(const QString &path)> exists; ///< whether anything is there
    std::function<std::optional<Record>(const QString &bundlePath)>
        information; ///< its information dictionary
};
/// The facts as the disk has them; any thread.
[[nodiscard]] InstallFacts factsOfDisk();

/// One build for one target.
struct PlannedInstall {
    QString key{}; ///< build key
    QString pluginPath{};
    QString archivePath{};
};

/// What must be fetched and installed, by build key; to be applied to the definitions on the main thread.
struct InstallPlan {
    /// Builds to download, each once. Their saved version is to be removed.
    QStringList downloads;
    /// In order; a build chosen for two targets stands there twice. Each is one command of the build's queue.
    QList<PlannedInstall> installs;
    /// What stands at its place as it should: nothing is to be done there.
    QList<PlannedInstall> current;
    /// Definitions that cannot be planned because of their name, and targets that do not answer.
    QList<BrevokError> refused;
};

/// Whether a build for host version @p build suits a target of host version @p target (major × 10 + minor):
/// the same major, no later minor, and on majors 7 and 16 the same side of 5 and of 3.
[[nodiscard]] bool buildSuitsTarget(qint64 target, qint64 build);
/// Whether any of @p definitions is a build that suits a target of host version @p target.
[[nodiscard]] bool anySuitsTarget(const QList<Record> &definitions, qint64 target);

/// Decides for one package which builds must be downloaded and installed into which target. Works on copies
/// of the definitions, so that what one target added counts for the next; any thread.
class InstallPlanner final {
public:
    /// @p definitions of one prefix, in order.
    InstallPlanner(const QList<Record> &definitions, QString dataPath, InstallFacts facts);

    /// Plans every definition that suits the target, whose disk may never answer.
    void determinePluginsAction(const QString &targetPath, qint64 targetVersion, Pulse &pulse);
    /// Plans one definition, unless it is up to date at @p pluginPath.
    void determinePluginAction(const QString &key, const QString &pluginPath, qint64 version);

    [[nodiscard]] const InstallPlan &plan() const { return m_plan; }

private:
    [[nodiscard]] bool isUpToDate(const Record &definition, const QString &pluginPath, qint64 version) const;

    QStringList m_order;
    QHash<QString, Record> m_definitions;
    QString m_dataPath;
    InstallFacts m_facts;
    InstallPlan m_plan;
};

/// The plan for every target record that has a path and a version. A target that does not answer in time is
/// refused and keeps no other waiting. Background threads.
[[nodiscard]] InstallPlan planInstall(const QList<Record> &definitions, const QList<Record> &targets,
    const QString &dataPath, const InstallFacts &facts);

} // namespace brevok
