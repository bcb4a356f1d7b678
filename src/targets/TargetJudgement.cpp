// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "targets/TargetJudgement.h"

#include "foundation/Record.h"
#include "foundation/Texts.h"

namespace brevok {

namespace {

// The first version that has a marketing name, and the last of two places before the point.
constexpr qint64 oldestVersion = 30;
constexpr qint64 newestVersion = 999;

bool isHostVersion(const QString &text)
{
    const qint64 version = leadingInteger(text);
    return version >= oldestVersion && version <= newestVersion && QString::number(version) == text;
}

} // namespace

QString doesNotAnswer(const QString &path)
{
    return Texts::tr("'%1' is not responding. Try again when its disk or server responds.").arg(path);
}

std::optional<QString> whyNoTarget(
    const QString &path, const QString &version, const std::optional<FolderLook> &look)
{
    if (!path.startsWith(u'/')) {
        return Texts::tr("'%1' is not an absolute path.").arg(path);
    }
    if (!isHostVersion(version)) {
        return Texts::tr("'%1' is not a version: enter the application's version times ten, from %2 to %3, "
                         "such as 140 for 14.0.")
            .arg(version)
            .arg(oldestVersion)
            .arg(newestVersion);
    }
    if (!look) {
        return doesNotAnswer(path);
    }
    if (!look->exists) {
        return Texts::tr("There is no folder '%1'.").arg(path);
    }
    if (!look->isFolder) {
        return Texts::tr("'%1' is not a folder.").arg(path);
    }
    if (look->resolved == u'/') {
        return Texts::tr("'%1' is the root of the file system, which cannot be used as a Plug-Ins folder.")
            .arg(path);
    }
    return std::nullopt;
}

} // namespace brevok
