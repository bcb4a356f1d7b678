// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/InstallPaths.h"

#include "catalogue/BrevokPlugins.h"
#include "foundation/Paths.h"
#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"

namespace brevok {

using namespace Qt::StringLiterals;

QString applicationFolder(const QString &pluginPath)
{
    return deletingLastPathComponent(targetFolder(pluginPath));
}

QString targetFolder(const QString &pluginPath)
{
    return deletingLastPathComponent(deletingLastPathComponent(pluginPath));
}

QString archiveFolder(const QString &dataPath, const Record &definition)
{
    // A stored record may hold anything; only a number may become a folder's name.
    const QJsonValue host = definition.value(PluginKeys::hostVersion);
    return dataPath + u'/' + (isNumber(host) ? displayText(host) : QString::number(integerValue(host)));
}

QString archivePath(const QString &dataPath, const Record &definition)
{
    return archiveFolder(dataPath, definition) + u'/' + definition.value(PluginKeys::name).toString()
        + u".zip"_s;
}

BrevokError installerError(const QString &description)
{
    return {.domain = QString::fromLatin1(installerErrorDomain), .code = 1, .description = description};
}

BrevokError nameRefused(const QString &name)
{
    return installerError(
        Texts::tr("The plug-in name \"%1\" cannot be used as a file name.").arg(oneLine(name)));
}

} // namespace brevok
