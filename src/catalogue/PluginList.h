// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"

#include <QList>

namespace brevok {

/// A valid element of the list that the service sends.
struct ListedBuild {
    QString key; ///< build key
    QString name;
    QString prefix;
    QString version;
    qint64 hostVersion = 0;
    /// As it is kept when it is new: with its prefix among its prefixes, and without what would be taken for
    /// local state.
    Record record;
};

/// What a list holds for one prefix.
struct ListedPrefix {
    QString prefix;
    QList<ListedBuild> builds{};
    bool onePlaceEach = true; ///< no two builds have one name and host version
};

/// A list, made ready for DefinitionTables::merge().
struct PluginList {
    QList<ListedPrefix> prefixes{};
    bool allValid = true; ///< nothing was left out with a line in the log
};

/// Of each plug-in, host version and prefix in @p list the newest valid build. Elements for other platforms
/// are skipped, invalid ones with a log line. Elements that nobody else refers to are taken over uncopied.
/// Any thread.
[[nodiscard]] PluginList newestBuilds(QJsonArray list);

} // namespace brevok
