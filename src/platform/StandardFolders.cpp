// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/StandardFolders.h"

namespace brevok {

namespace {

const QString updates = QStringLiteral("Updates");

} // namespace

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

QString StandardFolders::updatesFolder() const
{
    return dataFolder() + u'/' + updates;
}

bool StandardFolders::isReserved(const QString &name)
{
    // Archives lie in folders named by their host versions, which are numbers of any form.
    bool isNumber = false;
    name.toDouble(&isNumber);
    // As on a disk that takes large and small letters for the same.
    const QString folded = name.toCaseFolded();
    return isNumber || folded == updates.toCaseFolded() || folded.startsWith(QStringLiteral("state.sqlite"))
        || folded.endsWith(QStringLiteral(".lock"));
}

} // namespace brevok
