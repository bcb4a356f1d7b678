// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "install/Converger.h"

#include <QString>
#include <QVariantMap>

#include <optional>
#include <variant>

namespace brevok {

/// What the administrator decides for every user of this machine. Empty where there is no policy.
struct Policy {
    struct Entry {
        QString value;
        QString source; ///< file, line and key, for messages
    };

    std::optional<Entry> serviceUrl;
    std::optional<Entry> serviceAuthorities; ///< a file's absolute path
    std::optional<Entry> reachabilityHost;
    QStringList applications; ///< absolute paths
    QVariantMap lockedSettings; ///< by their keys in the store
    PackageWishes packages;
};

/// Reads the policy at @p file, and after it those in the folder of that name with ".d" behind it whose names
/// end in ".conf", in the order of their names: groups [Service], [Applications], [Settings] and [Packages]
/// of lines KEY=VALUE, with comments that start with "#" or ";". The lists of [Packages] add up, every other
/// key stands in one place. An absent file is an empty policy; one that cannot be read, or holds anything
/// that is not known, is an error, since a policy that is not understood must not be passed over. Any thread.
/// @return the policy, or one line that says what is wrong and where. The values of [Service] are for the
/// caller to check.
[[nodiscard]] std::variant<Policy, QString> readPolicy(const QString &file);

/// The part of it that converging wants, read anew: the policy may be another by now than when the program
/// started. Any thread.
[[nodiscard]] Converger::Wishes readWishes(const QString &policyFile);

} // namespace brevok
