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

QList<Record> PackageOperation::definitions() const
{
    QList<Record> records;
    const QList<DefinitionPtr> shared = m_with.plugins.pluginIndex().value(m_prefix);
    for (const DefinitionPtr &one : shared) {
        records.append(one->record);
    }
    return records;
}

void PackageOperation::reportLater(const QList<BrevokError> &errors, const QString &plugin)
{
    if (!errors.isEmpty()) {
        onMain(&m_flow, [&flow = m_flow, errors, plugin] { flow.reportError(errors, plugin); });
    }
}

} // namespace brevok
