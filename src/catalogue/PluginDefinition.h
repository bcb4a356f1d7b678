// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/PackedRecord.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMap>

#include <memory>
#include <optional>

namespace brevok {

/// Keys and values of a plug-in definition.
namespace PluginKeys {
inline constexpr QLatin1StringView name("Name");
inline constexpr QLatin1StringView prefix("Prefix");
inline constexpr QLatin1StringView version("Version");
inline constexpr QLatin1StringView hostVersion("HostVersion");
inline constexpr QLatin1StringView size("Size");
inline constexpr QLatin1StringView checksum("SHA256"); ///< of the archive, in hexadecimal; may be missing
inline constexpr QLatin1StringView link("Link");
inline constexpr QLatin1StringView published("Published");
inline constexpr QLatin1StringView platform("Platform");
inline constexpr QLatin1StringView prefixes("Prefixes");
inline constexpr QLatin1StringView commandQueue("CommandQueue");
inline constexpr QLatin1StringView savedVersion("SavedVersion");
inline constexpr QLatin1StringView downloading("Downloading"); ///< value of savedVersion
inline constexpr QLatin1StringView mac("Mac"); ///< value of platform
} // namespace PluginKeys

/// One build of one plug-in for one host version: one shared object per build key, so that local state
/// written into it is seen under every prefix. Changed on the main thread only, inside
/// BrevokPlugins::change().
struct PluginDefinition {
    QString key; ///< build key
    QString name; ///< as the record has it, like all of the build key's parts, which never change
    QString version;
    qint64 hostVersion = 0;
    PackedRecord record; ///< packed as long as it holds no local state but its prefixes
    int places = 0; ///< in the lists of the prefixes
    bool unsaved = false;
};
using DefinitionPtr = std::shared_ptr<PluginDefinition>;
/// Prefix to definitions, in order of the prefixes.
using DefinitionIndex = QMap<QString, QList<DefinitionPtr>>;
/// The same as plain values, for background work.
using DefinitionSnapshot = QHash<QString, QList<Record>>;
using PackedSnapshot = QHash<QString, QList<PackedRecord>>;

/// "HostVersion:Name_Version", what makes a build one build.
[[nodiscard]] QString buildKey(const Record &definition);

/// The 32 bytes of the checksum that @p definition has of its archive: empty when it has none, nothing when
/// what stands there is no checksum.
[[nodiscard]] std::optional<QByteArray> archiveChecksum(const Record &definition);

/// Whether @p definition has a pending install or remove command.
[[nodiscard]] bool hasPendingCommands(const PluginDefinition &definition);

} // namespace brevok
