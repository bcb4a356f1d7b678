// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PackageStatus.h"

#include "foundation/StandardVersionComparator.h"

#include <algorithm>
#include <compare>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// Two host generations were split by an incompatible minor release: a build serves one side only.
std::optional<qint64> splitOf(qint64 majorVersion)
{
    switch (majorVersion) {
    case 16:
        return 3;
    case 7:
        return 5;
    default:
        return {};
    }
}

bool onOneSide(qint64 split, qint64 a, qint64 b)
{
    return (a < split) == (b < split);
}

// The host version on the bundle's scale ("14.0") as a code. The product is taken in single precision, in
// which 16.3 gives 163.
std::optional<qint64> hostCodeOf(const QJsonValue &shortVersion)
{
    if (shortVersion.isUndefined() || shortVersion.isNull()) {
        return {};
    }
    float version = 0;
    if (shortVersion.isString()) {
        version = leadingFloat(shortVersion.toString());
    } else if (isNumber(shortVersion)) {
        version = shortVersion.isBool() ? static_cast<float>(shortVersion.toBool())
                                        : static_cast<float>(shortVersion.toDouble());
    }
    constexpr float limit = 1e9F;
    const float code = version * 10.0F;
    return code > -limit && code < limit ? static_cast<qint64>(code) : 0;
}

bool installedHostMatches(HostCode target, HostCode installed)
{
    if (installed.major != target.major) {
        return false;
    }
    const std::optional<qint64> split = splitOf(target.major);
    return !split || onOneSide(*split, target.minor, installed.minor);
}

} // namespace

QString packageStatusName(PackageStatus status)
{
    switch (status) {
    case PackageStatus::MissingData:
        return u"Missing Data"_s;
    case PackageStatus::NotInstalled:
        return u"Not Installed"_s;
    case PackageStatus::NotUpdated:
        return u"Not Updated"_s;
    case PackageStatus::UpToDate:
        return u"Up To Date"_s;
    case PackageStatus::InProgress:
        return u"In Progress"_s;
    case PackageStatus::Mixed:
        return u"Mixed"_s;
    case PackageStatus::MixedNotUpdated:
        return u"Mixed Not Updated"_s;
    }
    return {};
}

bool hostMatches(HostCode target, HostCode build)
{
    if (build.major != target.major) {
        return false;
    }
    if (const std::optional<qint64> split = splitOf(target.major)) {
        return onOneSide(*split, target.minor, build.minor);
    }
    return target.minor >= build.minor;
}

BundleFacts bundleFacts(bool exists, const std::optional<Record> &information)
{
    BundleFacts facts{.exists = exists, .hostVersion = {}, .version = {}};
    if (!exists || !information) {
        return facts;
    }
    facts.hostVersion = hostCodeOf(information->value(QLatin1StringView(hostVersionKey)));
    const QString version = nonEmptyString(information->value(QLatin1StringView(versionKey)));
    facts.hasVersion = !version.isEmpty();
    facts.version = version.left(version.indexOf(u' ')); // all of it when there is no space
    return facts;
}

PackageStatus statusOfBundle(const BundleFacts &bundle, HostCode target, const QString &offeredVersion)
{
    if (!bundle.exists) {
        return PackageStatus::NotInstalled;
    }
    if (!bundle.hostVersion || !installedHostMatches(target, HostCode(*bundle.hostVersion))) {
        return PackageStatus::NotUpdated;
    }
    if (!bundle.hasVersion) {
        return PackageStatus::NotInstalled;
    }
    if (bundle.version.isEmpty() || offeredVersion.isEmpty()) {
        return PackageStatus::MissingData;
    }
    const bool older = bundle.version != offeredVersion
        && std::is_lt(StandardVersionComparator::compareVersion(bundle.version, offeredVersion));
    return older ? PackageStatus::NotUpdated : PackageStatus::UpToDate;
}

bool isSupportPlugin(const QString &name)
{
    return name == "Tolvane"_L1 || name == "Vondrel Tools"_L1;
}

bool isSupportPackage(const QString &prefix)
{
    return prefix == SpecialPrefix::support || prefix == SpecialPrefix::oldSupport;
}

PackageStatus combinedStatus(
    PackageStatus before, PackageStatus result, bool supportPlugin, const QString &prefix)
{
    if (supportPlugin && !isSupportPackage(prefix)) {
        return before;
    }
    if (before == result) {
        return before;
    }
    if (before == PackageStatus::MissingData) {
        return result;
    }
    const bool needsUpdate = before == PackageStatus::MixedNotUpdated || before == PackageStatus::NotUpdated
        || result == PackageStatus::NotUpdated;
    return needsUpdate && !supportPlugin ? PackageStatus::MixedNotUpdated : PackageStatus::Mixed;
}

} // namespace brevok
