// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/privileges/PackageKitInstaller.h"

#include "platform/linux/privileges/PackageKitTransaction.h"

namespace brevok {

void PackageKitInstaller::install(
    const QString &path, QObject *context, ProgressHandler progress, DoneHandler done)
{
    (new PackageKitTransaction(std::move(progress), std::move(done), context))->install(path);
}

} // namespace brevok
