// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/CommandRun.h"

#include "catalogue/BrevokPackages.h"
#include "foundation/Tasks.h"
#include "install/CommandQueue.h"
#include "install/InstallPaths.h"
#include "install/RunningTargetAlerts.h"

#include <algorithm>
#include <iterator>

namespace brevok {

CatalogueSnapshot catalogueOf(
    const QSet<QString> &names, const BrevokPlugins &plugins, const BrevokPackages &packages)
{
    CatalogueSnapshot snapshot;
    for (const QString &name : names) {
        const QSet<QString> prefixes = plugins.prefixesWith(name);
        for (const QString &prefix : prefixes) {
            if (!snapshot.definitions.contains(prefix)) {
                snapshot.packages += packages.packagesWithPrefix(prefix);
                snapshot.definitions.insert(prefix, plugins.snapshotOf(prefix));
            }
        }
    }
    return snapshot;
}

CommandRun::CommandRun(Collaborators collaborators, Order order, QObject *parent)
    : QObject(parent)
    , m_with(std::move(collaborators))
    , m_order(std::move(order))
    , m_tools{.access = m_with.access}
{
}

CommandRun::~CommandRun() = default;

void CommandRun::begin()
{
    collect();
    QList<CommandTask> tasks;
    std::transform(m_commands.cbegin(), m_commands.cend(), std::back_inserter(tasks),
        [](const Command &command) { return command.task; });
    inBackgroundThen(
        this, [tasks, access = m_with.access] { return helperIsNeeded(tasks, access); },
        [this](bool needed) {
            if (!needed) {
                next();
                return;
            }
            m_with.askForHelper(this, [this](bool valid) {
                inBackgroundThen(
                    this, [access = m_with.access, valid] { return access.installer(valid); },
                    [this](const std::shared_ptr<InstallerOperations> &installer) {
                        m_tools.helper = installer;
                        next();
                    });
            });
        });
}

void CommandRun::collect()
{
    const DefinitionPtr definition = m_with.plugins.definition(m_order.key);
    if (!definition) {
        return;
    }
    const Record &record = definition->record;
    const QString name = record.value(PluginKeys::name).toString();
    const QByteArray checksum = archiveChecksum(record).value_or(QByteArray());
    const QJsonArray queue = commandQueue(record);
    for (const QJsonValue value : queue) {
        const QJsonArray command = value.toArray();
        if (m_order.isRemoval ? isRemovalCommand(command) : isInstallCommand(command)) {
            m_commands.append({command,
                {.plugin = name,
                    .pluginPath = command[1].toString(),
                    .archive = m_order.isRemoval ? QString() : command[2].toString(),
                    .checksum = checksum,
                    .workspaceFile = m_with.workspaceFile,
                    .user = m_with.user}});
        }
    }
    if (m_order.isRemoval) {
        m_known = catalogueOf({name}, m_with.plugins, m_with.packages);
    }
}

void CommandRun::next()
{
    if (m_commands.isEmpty()) {
        finish();
        return;
    }
    inBackgroundThen(
        this,
        [task = m_commands.constFirst().task, tools = m_tools, &applications = m_with.applications] {
            return lookAtTask(task, tools, applications);
        },
        [this](const CommandLook &look) { looked(look); });
}

void CommandRun::looked(const CommandLook &look)
{
    const CommandTask &task = m_commands.constFirst().task;
    const bool removal = m_order.isRemoval;
    if (const auto ended = endedBefore(task, look, m_order.manner.skipRunningTargets)) {
        carriedOut(*ended);
    } else {
        if (look.running) {
            using Occasion = RunningTargetAlerts::Occasion;
            m_with.alerts.note(removal ? Occasion::Removal : Occasion::Install, *look.running,
                applicationFolder(task.pluginPath));
        }
        carryOut();
    }
}

void CommandRun::carryOut()
{
    const CommandTask task = m_commands.constFirst().task;
    const auto then = [this](const CommandResult &result) {
        carriedOut(result);
    };
    if (m_order.isRemoval) {
        const QString prefix = m_order.package.value(PackageKeys::prefix).toString();
        inBackgroundThen(
            this,
            [task, prefix, known = m_known, tools = m_tools] {
                return carryOutRemoval(task, prefix, known, tools);
            },
            then);
    } else {
        inBackgroundThen(
            this, [task, tools = m_tools] { return carryOutInstall(task, tools); }, then);
    }
}

void CommandRun::carriedOut(const CommandResult &result)
{
    m_result += result;
    const QJsonArray queued = m_commands.takeFirst().queued;
    const auto dequeue = [this, queued] {
        if (const DefinitionPtr definition = m_with.plugins.definition(m_order.key)) {
            removeCommand(definition->record, queued);
        }
    };
    m_with.plugins.change({m_order.key}, dequeue, this, [this](const auto & /*error*/) { next(); });
}

void CommandRun::finish()
{
    m_with.packages.forgetNotified(m_order.package.value(PackageKeys::name).toString());
    onMain(&m_with.packages, [&packages = m_with.packages] { packages.notifyPackageStatuses(); });
    Q_EMIT ended();
}

} // namespace brevok
