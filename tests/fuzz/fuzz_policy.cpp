// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/Policy.h"
#include "foundation/Settings.h"
#include "foundation/UntrustedText.h"
#include "fuzz/Fuzz.h"

#include <algorithm>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

bool isAbsolute(const QString &path)
{
    return path.startsWith(u'/');
}

void checkSettings(const QVariantMap &locked)
{
    for (auto value = locked.cbegin(); value != locked.cend(); ++value) {
        const Setting *setting = findSetting(value.key());
        HOLDS(setting != nullptr && value.key() == setting->key);
        HOLDS(setting->type == Setting::Type::Truth
                ? value->typeId() == QMetaType::Bool
                : value->typeId() == QMetaType::Int && value->toInt() >= 0);
    }
}

// The same policy in our own words.
QByteArray written(const Policy &policy)
{
    QString text = u"[Service]\n"_s;
    const auto line = [&text](const QString &key, const QString &value) {
        text += key + u" = "_s + value + u'\n';
    };
    const auto entry = [&line](const QString &key, const std::optional<Policy::Entry> &given) {
        if (given) {
            line(key, given->value);
        }
    };
    entry(u"URL"_s, policy.serviceUrl);
    entry(u"CA"_s, policy.serviceAuthorities);
    entry(u"ReachabilityHost"_s, policy.reachabilityHost);
    text += u"[Packages]\n"_s;
    line(u"Required"_s, policy.packages.required.join(u':'));
    line(u"Forbidden"_s, policy.packages.forbidden.join(u':'));
    if (!policy.applications.isEmpty()) {
        text += u"[Applications]\n"_s;
        line(u"Folders"_s, policy.applications.join(u':'));
    }
    text += u"[Settings]\n"_s;
    for (auto value = policy.lockedSettings.cbegin(); value != policy.lockedSettings.cend(); ++value) {
        line(value.key(), value->toString());
    }
    return text.toUtf8();
}

} // namespace

void fuzz::check(const QByteArray &input)
{
    const QString file = scratchFolder() + u"/policy.conf"_s;
    put(file, input);
    const auto read = readPolicy(file);
    if (const auto *wrong = std::get_if<QString>(&read)) {
        HOLDS(wrong->startsWith(file) && isHarmless(*wrong));
        return;
    }
    const auto &policy = std::get<Policy>(read);
    checkSettings(policy.lockedSettings);
    HOLDS(std::all_of(policy.applications.cbegin(), policy.applications.cend(), isAbsolute));
    HOLDS(!policy.serviceAuthorities || isAbsolute(policy.serviceAuthorities->value));
    // Without quotes a blank at the end is not part of a value.
    const auto endsInBlank = [](const QString &path) {
        return path.back().isSpace();
    };
    if (std::any_of(policy.applications.cbegin(), policy.applications.cend(), endsInBlank)) {
        return;
    }
    put(file, written(policy));
    const auto reread = readPolicy(file);
    HOLDS(std::holds_alternative<Policy>(reread));
    const auto &same = std::get<Policy>(reread);
    HOLDS(same.applications == policy.applications && same.lockedSettings == policy.lockedSettings);
    HOLDS(same.packages.required == policy.packages.required);
    HOLDS(same.packages.forbidden == policy.packages.forbidden);
    HOLDS(same.packages.autoUpdate == policy.packages.autoUpdate);
}
