// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "targets/TargetLook.h"

#include "foundation/BoundedWork.h"
#include "foundation/Paths.h"
#include "foundation/Record.h"
#include "platform/PropertyLists.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

/// The host application at @p foundPath; nothing for any other application.
std::optional<HostApplication> hostApplication(const QString &foundPath)
{
    QString path = QFileInfo(foundPath).canonicalFilePath();
    if (path.isEmpty()) {
        path = foundPath;
    }
    const Record information = bundleInformation(path).value_or(Record());
    const QString version = nonEmptyString(information.value("CFBundleVersion"_L1));
    const QString type = nonEmptyString(information.value("CFBundlePackageType"_L1));
    const QString signature = nonEmptyString(information.value("CFBundleSignature"_L1));
    if (version.isEmpty() || type != "APPL"_L1 || (signature != "InDn"_L1 && signature != "InCp"_L1)) {
        return std::nullopt;
    }
    constexpr qint64 buildsPerVersion = 100;
    const QString targetPath = path.first(path.lastIndexOf(u'/') + 1) + "Plug-Ins/"_L1;
    return HostApplication{.targetPath = targetPath,
        .name = information.value("CFBundleName"_L1).toString(),
        .version = QString::number(leadingInteger(version) / buildsPerVersion),
        .isInCopy = signature == "InCp"_L1,
        .folder = lookAtFolder(targetPath)};
}

} // namespace

QString placeOf(const QString &path)
{
    return deletingLastPathComponent(path);
}

std::optional<HostApplication> hostBeside(const QString &path)
{
    std::optional<HostApplication> found;
    const QDir folder(placeOf(path));
    const QStringList bundles = folder.entryList({u"*.app"_s}, QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &bundle : bundles) {
        std::optional<HostApplication> host = hostApplication(folder.filePath(bundle));
        if (host && (!found || found->isInCopy)) {
            found = std::move(host);
        }
    }
    return found;
}

TargetFindings lookAtTargets(const QStringList &folders, const QStringList &bundles, const Task &cameBack)
{
    TargetFindings findings;
    for (const QString &folder : folders) {
        const auto look = [folder](Pulse &) {
            return lookAtFolder(folder);
        };
        if (const auto found = bounded<FolderLook>(placeOf(folder), look, cameBack)) {
            findings.folders.insert(folder, *found);
        }
    }
    for (const QString &bundle : bundles) {
        const auto look = [bundle](Pulse &) {
            return hostApplication(bundle);
        };
        const auto found = bounded<std::optional<HostApplication>>(placeOf(bundle), look, cameBack);
        if (found && *found) {
            findings.hosts.append(**found);
        }
    }
    return findings;
}

} // namespace brevok
