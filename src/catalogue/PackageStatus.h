// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"

#include <QString>

#include <optional>

namespace brevok {

/// Prefixes of packages that have rules of their own.
namespace SpecialPrefix {
inline constexpr QLatin1StringView priority("0xr5000"); ///< at the top of the panel's list
inline constexpr QLatin1StringView support("0xr5700"); ///< the companion, never removed by itself
inline constexpr QLatin1StringView oldSupport("KM#xR57"); ///< the companion under its other prefix
} // namespace SpecialPrefix

/// What a package's plug-ins are in all valid targets together. The numbers are kept by other programs'
/// reports.
enum class PackageStatus : unsigned {
    MissingData = 1,
    NotInstalled = 2,
    NotUpdated = 3,
    UpToDate = 4,
    InProgress = 5,
    Mixed = 6,
    MixedNotUpdated = 7,
};
/// Whether an update waits for a package with this status.
[[nodiscard]] constexpr bool waitsForUpdate(PackageStatus status)
{
    return status == PackageStatus::NotUpdated || status == PackageStatus::MixedNotUpdated;
}
/// "Missing Data", "Not Installed" and so on.
[[nodiscard]] QString packageStatusName(PackageStatus status);

/// A host version code (140, 75) taken apart.
struct HostCode {
    qint64 major = 0;
    qint64 minor = 0;

    explicit HostCode(qint64 code)
        : major(code / 10)
        , minor(code - 10 * major)
    {
    }
};

/// Whether a build for @p build fits the target application @p target.
[[nodiscard]] bool hostMatches(HostCode target, HostCode build);

/// The keys of a bundle's information dictionary that its status depends on.
inline constexpr auto hostVersionKey = "TolvaneHostAppShortVersion";
inline constexpr auto versionKey = "CFBundleShortVersionString";

/// What an installed bundle says of itself, as far as its status depends on it.
struct BundleFacts {
    bool exists = false;
    std::optional<qint64> hostVersion; ///< the host version code that the bundle is for
    bool hasVersion = false; ///< "CFBundleShortVersionString" is a text of length above 0
    QString version; ///< its part before the first space
};
/// @p information is the bundle's information dictionary, nothing when it cannot be read.
[[nodiscard]] BundleFacts bundleFacts(bool exists, const std::optional<Record> &information);

/// The status of one installed bundle in @p target, against the version that the service offers.
[[nodiscard]] PackageStatus statusOfBundle(
    const BundleFacts &bundle, HostCode target, const QString &offeredVersion);

/// Whether a plug-in called @p name belongs to what the maker's packages share.
[[nodiscard]] bool isSupportPlugin(const QString &name);

/// Whether @p prefix is that of the companion, which is made of nothing but shared plug-ins.
[[nodiscard]] bool isSupportPackage(const QString &prefix);

/// The status of a package with @p prefix after one more result: @p result of a plug-in, which may be a
/// support plug-in, on top of @p before.
[[nodiscard]] PackageStatus combinedStatus(
    PackageStatus before, PackageStatus result, bool supportPlugin, const QString &prefix);

} // namespace brevok
