// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "reporting/InstalledPlugins.h"

#include "foundation/BoundedWork.h"
#include "platform/PropertyLists.h"
#include "targets/TargetLook.h"

#include <QDir>
#include <QSysInfo>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

QList<std::optional<Record>> readPlugins(const QString &targetPath, Pulse &pulse)
{
    QList<std::optional<Record>> found;
    const QDir folder(targetPath + "/Tolvane"_L1);
    const QStringList names =
        folder.entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System, QDir::Name);
    for (const QString &name : names) {
        pulse.beat();
        if (name.toLower().endsWith(".indesignplugin"_L1)) {
            found.append(bundleInformation(folder.filePath(name)));
        }
    }
    return found;
}

} // namespace

QList<std::optional<Record>> installedPlugins(const QString &targetPath)
{
    if (targetPath.isEmpty()) {
        return {};
    }
    const auto read = [targetPath](Pulse &pulse) {
        return readPlugins(targetPath, pulse);
    };
    return bounded<QList<std::optional<Record>>>(placeOf(targetPath), read)
        .value_or(QList<std::optional<Record>>());
}

QString operatingSystemVersion()
{
    return QSysInfo::prettyProductName();
}

} // namespace brevok
