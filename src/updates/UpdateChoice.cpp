// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "updates/UpdateChoice.h"

#include "foundation/StandardVersionComparator.h"
#include "foundation/Texts.h"
#include "updates/PackageSignature.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 packageSizeLimit = 1024LL * 1024 * 1024;

bool isNewer(const QString &version, const QString &than)
{
    return StandardVersionComparator::compareVersion(version, than) == std::strong_ordering::greater;
}

bool suits(const AppcastItem &item, const UpdateRules &rules)
{
    const bool systemSuits = item.minimumSystemVersion.isEmpty() || rules.systemVersion.isEmpty()
        || !isNewer(item.minimumSystemVersion, rules.systemVersion);
    const bool skipped = !rules.skippedVersion.isEmpty() && !isNewer(item.version, rules.skippedVersion);
    const bool shownIsNoOlder =
        rules.installedShownVersion.isEmpty() || !isNewer(rules.installedShownVersion, item.shownVersion());
    const bool channelSuits = item.channel.isEmpty() || item.channel == rules.channel;
    return channelSuits && (item.displayVersion.isEmpty() || shownIsNoOlder) && !item.version.isEmpty()
        && isNewer(item.version, rules.installedVersion) && systemSuits && !skipped;
}

QString refusalOf(const AppcastItem &item)
{
    if (!item.address.isValid() || item.address.scheme() != "https"_L1 || item.address.host().isEmpty()
        || !item.address.userInfo().isEmpty()) {
        return Texts::tr("Version %1 is offered at an address that is not secure. It cannot be installed.")
            .arg(item.shownVersion());
    }
    if (signatureFrom(item.signature).isEmpty()) {
        return Texts::tr("Version %1 is offered without a valid signature. It cannot be installed.")
            .arg(item.shownVersion());
    }
    if (item.length <= 0 || item.length > packageSizeLimit) {
        return Texts::tr("Version %1 is offered without a valid size. It cannot be installed.")
            .arg(item.shownVersion());
    }
    return {};
}

} // namespace

UpdateChoice chooseUpdate(const QList<AppcastItem> &items, const UpdateRules &rules)
{
    const AppcastItem *newest = nullptr;
    const AppcastItem *newestSound = nullptr;
    for (const AppcastItem &item : items) {
        if (!suits(item, rules)) {
            continue;
        }
        if (newest == nullptr || isNewer(item.version, newest->version)) {
            newest = &item;
        }
        if ((newestSound == nullptr || isNewer(item.version, newestSound->version))
            && refusalOf(item).isEmpty()) {
            newestSound = &item;
        }
    }
    UpdateChoice choice;
    if (newestSound != nullptr) {
        choice.item = *newestSound;
    }
    if (newest != newestSound) {
        choice.refusal = refusalOf(*newest);
    }
    return choice;
}

} // namespace brevok
