// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "reporting/InstalledPlugins.h"

#include "platform/PropertyLists.h"

#include <QDir>
#include <QSysInfo>

namespace brevok {

using namespace Qt::StringLiterals;

QList<std::optional<Record>> installedPlugins(const QString &targetPath)
{
    QList<std::optional<Record>> found;
    if (targetPath.isEmpty()) {
        return found;
    }
    const QDir folder(targetPath + "/Tolvane"_L1);
    const QStringList names =
        folder.entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System, QDir::Name);
    for (const QString &name : names) {
        if (name.toLower().endsWith(".indesignplugin"_L1)) {
            found.append(bundleInformation(folder.filePath(name)));
        }
    }
    return found;
}

QString operatingSystemVersion()
{
    return QSysInfo::prettyProductName();
}

} // namespace brevok
