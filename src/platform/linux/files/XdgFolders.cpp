// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/StandardFolders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace brevok {

namespace {

// A relative path counts as unset: it would mean another folder with every working directory.
QString folderFrom(const char *variable, const char *underHome)
{
    const QString value = qEnvironmentVariable(variable);
    return QDir::cleanPath(
        QDir::isAbsolutePath(value) ? value : QDir::homePath() + u'/' + QString::fromLatin1(underHome));
}

} // namespace

StandardFolders standardFoldersForUser()
{
    const QString configuration = folderFrom("XDG_CONFIG_HOME", ".config");
    return {.settingsFile = configuration + QStringLiteral("/tolvane/brevok.conf"),
        .applicationSupport = folderFrom("XDG_DATA_HOME", ".local/share"),
        .library = folderFrom("XDG_STATE_HOME", ".local/state") + QStringLiteral("/tolvane-brevok"),
        .autostart = configuration + QStringLiteral("/autostart")};
}

QString administratorsPolicyFile()
{
    return administratorsPolicyFile(QFile::symLinkTarget(QStringLiteral("/proc/self/exe")));
}

QString administratorsPolicyFile(const QString &executable)
{
    QString prefix = QDir::cleanPath(QFileInfo(executable).path() + QStringLiteral("/.."));
    if (const QString usr = QStringLiteral("/usr"); prefix.endsWith(usr)) {
        prefix.chop(usr.size());
    }
    return QDir::cleanPath(prefix + QStringLiteral("/etc/tolvane-brevok/policy.conf"));
}

} // namespace brevok
