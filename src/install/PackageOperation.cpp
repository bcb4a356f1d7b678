// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/PackageOperation.h"

namespace brevok {

PackageOperation::PackageOperation(
    InstallFlow &flow, InstallFlow::Collaborators &with, Record package, QString prefix)
    : QObject(&flow)
    , m_flow(flow)
    , m_with(with)
    , m_package(std::move(package))
    , m_prefix(std::move(prefix))
{
}

PackageOperation::~PackageOperation() = default;

void PackageOperation::addFailure(const QString &plugin, const QString &reason)
{
    m_outcome.entries.append({.plugin = plugin, .reason = reason, .everywhere = true});
}

void PackageOperation::reportLater(const QList<BrevokError> &errors, const QString &plugin)
{
    if (!errors.isEmpty()) {
        onMain(&m_flow, [&flow = m_flow, errors, plugin] { flow.reportError(errors, plugin); });
    }
}

} // namespace brevok
