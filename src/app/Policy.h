// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QMap>
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
};

/// Reads the policy at @p file: groups [Service], [Applications] and [Settings] of lines KEY=VALUE, with
/// comments that start with "#" or ";". An absent file is an empty policy; one that cannot be read, or holds
/// anything that is not known, is an error, since a policy that is not understood must not be passed over.
/// @return the policy, or one line that says what is wrong and where. The values of [Service] are for the
/// caller to check.
[[nodiscard]] std::variant<Policy, QString> readPolicy(const QString &file);

} // namespace brevok
