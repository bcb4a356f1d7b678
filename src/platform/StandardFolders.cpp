// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/StandardFolders.h"

namespace brevok {

QString StandardFolders::dataFolder() const
{
    return applicationSupport + QStringLiteral("/Tolvane Brevok");
}

QString StandardFolders::stateFile() const
{
    return dataFolder() + QStringLiteral("/state.sqlite");
}

QString StandardFolders::logPathForFile(const QString &name) const
{
    return library + QStringLiteral("/Logs/") + name;
}

QString StandardFolders::logFile() const
{
    return logPathForFile(QStringLiteral("orlec.log"));
}

} // namespace brevok
