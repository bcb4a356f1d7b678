// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/InstallPaths.h"

#include "catalogue/BrevokPlugins.h"
#include "foundation/Texts.h"

namespace brevok {

using namespace Qt::StringLiterals;

QString deletingLastPathComponent(const QString &path)
{
    const auto withoutSlashesAtEnd = [](QString text) {
        while (text.size() > 1 && text.endsWith(u'/')) {
            text.chop(1);
        }
        return text;
    };
    const QString whole = withoutSlashesAtEnd(path);
    const qsizetype slash = whole.lastIndexOf(u'/');
    return slash < 0 ? QString() : withoutSlashesAtEnd(whole.first(slash + 1));
}

QString applicationFolder(const QString &pluginPath)
{
    return deletingLastPathComponent(deletingLastPathComponent(deletingLastPathComponent(pluginPath)));
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

bool isPlainFileName(const QString &name)
{
    return !name.isEmpty() && name != u"."_s && name != u".."_s && !name.contains(u'/')
        && !name.contains(QChar(u'\0'));
}

BrevokError installerError(const QString &description)
{
    return {.domain = QString::fromLatin1(installerErrorDomain), .code = 1, .description = description};
}

BrevokError nameRefused(const QString &name)
{
    return installerError(Texts::tr("The plug-in name “%1” cannot be used as a file name.")
                              .arg(QString(name).replace(QChar(u'\0'), u'?')));
}

} // namespace brevok
