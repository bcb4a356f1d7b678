// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/StandardVersionComparator.h"
#include "foundation/UntrustedText.h"
#include "fuzz/Fuzz.h"
#include "updates/UpdateChoice.h"

#include <algorithm>
#include <compare>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

bool isNewer(const QString &version, const QString &than)
{
    return std::is_gt(StandardVersionComparator::compareVersion(version, than));
}

void checkItem(const AppcastItem &item, qsizetype longest)
{
    for (const QString &text : {item.version, item.displayVersion, item.minimumSystemVersion}) {
        HOLDS(text.size() <= 128 && isHarmless(text));
    }
    // Nothing in a feed grows.
    HOLDS(item.description.size() <= longest && item.channel.size() <= longest);
}

void checkChoice(const AppcastItem &item, const UpdateRules &rules)
{
    HOLDS(isNewer(item.version, rules.installedVersion) && isNewer(item.version, rules.skippedVersion));
    HOLDS(item.minimumSystemVersion.isEmpty() || !isNewer(item.minimumSystemVersion, rules.systemVersion));
    HOLDS(item.displayVersion.isEmpty() || !isNewer(rules.installedShownVersion, item.displayVersion));
    HOLDS(item.channel.isEmpty() || item.channel == rules.channel);
    HOLDS(item.address.scheme() == u"https"_s && !item.address.host().isEmpty());
    HOLDS(item.address.userInfo().isEmpty() && item.length > 0 && item.length <= 1024LL * 1024 * 1024);
    HOLDS(QByteArray::fromBase64(item.signature).size() == 64);
}

} // namespace

void fuzz::check(const QByteArray &input)
{
    const UpdateRules rules{.installedVersion = u"100"_s,
        .installedShownVersion = u"1.0"_s,
        .systemVersion = u"12"_s,
        .channel = u"beta"_s,
        .skippedVersion = u"103"_s};
    std::optional<BrevokError> error;
    const QList<AppcastItem> items = parseAppcast(input, &error);
    HOLDS(!error || items.isEmpty());
    for (const AppcastItem &item : items) {
        checkItem(item, input.size());
    }
    const UpdateChoice choice = chooseUpdate(items, rules);
    HOLDS(isHarmless(choice.refusal));
    if (choice.item) {
        checkChoice(*choice.item, rules);
        HOLDS(std::none_of(items.cbegin(), items.cend(), [&](const AppcastItem &item) {
            return isNewer(item.version, choice.item->version) && chooseUpdate({item}, rules).item;
        }));
    }
}
