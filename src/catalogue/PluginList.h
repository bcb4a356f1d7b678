// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/PluginDefinition.h"

#include <QList>

#include <memory>
#include <optional>

namespace brevok {

/// A valid element of the list that the service sends. Its record is what is kept when it is new: with its
/// prefix among its prefixes, and without what would be taken for local state.
struct ListedBuild {
    QString prefix;
    DefinitionPtr definition;
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

/// Of each plug-in, host version and prefix in a list the newest valid build. Elements for other platforms
/// are skipped, invalid ones with a log line. Nothing when @p json is no list, or one that Qt must read
/// first. Any thread.
[[nodiscard]] std::optional<PluginList> newestBuilds(const QByteArray &json);

/// A definition as it was stored, and whether its record is in order: without commands and saved version, and
/// with its prefix among its prefixes.
struct StoredBuild {
    PluginDefinition definition;
    bool inOrder = false;
};

/// Reads stored definitions, one after the other.
class StoredBuildReader final {
public:
    StoredBuildReader();
    ~StoredBuildReader();
    Q_DISABLE_COPY_MOVE(StoredBuildReader)

    [[nodiscard]] StoredBuild read(const QString &key, const PackedRecord &record);

private:
    struct Parser;
    std::unique_ptr<Parser> m_parser;
};

} // namespace brevok
