// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"

#include <QHash>
#include <QStringList>

#include <map>
#include <utility>

namespace brevok {

/// Keys of a package record.
namespace PackageKeys {
inline constexpr QLatin1StringView name("Name");
inline constexpr QLatin1StringView published("Published");
inline constexpr QLatin1StringView version("Version");
inline constexpr QLatin1StringView platform("Platform");
inline constexpr QLatin1StringView icon("Icon");
inline constexpr QLatin1StringView iconPath("IconPath");
inline constexpr QLatin1StringView prefix("Prefix");
inline constexpr QLatin1StringView info("Info");
} // namespace PackageKeys

/// The usable elements of a list that the service sends, each with the name that it goes by.
struct ListedPackages {
    QList<std::pair<QString, Record>> packages{};
    /// Whether the list need not be read again when it comes once more. It has to be where an element was
    /// refused, which the log tells each time, or names the file of its icon, which may change.
    bool mayBeKept = true;
};
/// In the order of @p list. Elements for other platforms are skipped, unusable ones with a log line. Any
/// thread.
[[nodiscard]] ListedPackages listedPackages(const QJsonArray &list);

/// The package records by name, case-insensitively (names that differ in case only are two names), and by
/// prefix. Values only.
class PackageRecords final {
    struct Order {
        bool operator()(const QString &a, const QString &b) const;
    };

public:
    using ByName = std::map<QString, Record, Order>;

    [[nodiscard]] const ByName &byName() const { return m_byName; }
    /// The names of the packages with @p prefix, in order.
    [[nodiscard]] QStringList namesWith(const QString &prefix) const { return m_names.value(prefix); }
    [[nodiscard]] bool hasPrefix(const QString &prefix) const { return m_names.contains(prefix); }
    /// The prefixes, each once, in the order of the packages.
    [[nodiscard]] QStringList prefixes() const;

    void put(const QString &name, const Record &package);

private:
    ByName m_byName;
    QHash<QString, QStringList> m_names; ///< by prefix
};

} // namespace brevok
