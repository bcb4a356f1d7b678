// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/PackageOperation.h"

#include "foundation/Log.h"
#include "install/BrevokAppInstaller.h"

namespace brevok {

PackageOperation::PackageOperation(
    InstallFlow &flow, InstallFlow::Collaborators &with, Record package, QString prefix, const Manner &manner)
    : QObject(&flow)
    , m_flow(flow)
    , m_with(with)
    , m_package(std::move(package))
    , m_prefix(std::move(prefix))
    , m_manner(manner)
{
}

PackageOperation::~PackageOperation() = default;

void PackageOperation::addFailure(const QString &plugin, const QString &reason)
{
    m_outcome.entries.append({.plugin = plugin, .reason = reason, .everywhere = true});
}

void PackageOperation::foresee(const QList<CommandTask> &tasks)
{
    m_with.installer.foresee(tasks, this, [this](const QList<PluginOutcome> &entries) {
        m_outcome.entries += entries;
        Q_EMIT finished();
    });
}

void PackageOperation::reportLater(const QList<BrevokError> &errors, const QString &plugin)
{
    if (errors.isEmpty()) {
        return;
    }
    if (!m_manner.unattended && !m_manner.toldTogether) {
        onMain(&m_flow, [&flow = m_flow, errors, plugin] { flow.reportError(errors, plugin); });
        return;
    }
    for (const BrevokError &error : errors) {
        logError(error);
    }
    if (m_manner.toldTogether) {
        m_outcome.untold.append({errors, plugin});
    }
}

} // namespace brevok
