// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PackageRecords.h"

#include "catalogue/PluginDefinition.h"
#include "foundation/Log.h"

#include <QSet>

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

ListedPackages listedPackages(const QJsonArray &list)
{
    ListedPackages listed;
    const auto refuse = [&listed](const QString &line) {
        logLine(line);
        listed.mayBeKept = false;
    };
    for (const QJsonValue element : list) {
        if (!element.isObject()) {
            refuse(u"package is not nsdirectory!"_s);
            continue;
        }
        const Record package = element.toObject();
        if (package.value(PackageKeys::platform).toString() != PluginKeys::mac) {
            continue;
        }
        const QString name = nonEmptyString(package.value(PackageKeys::name));
        if (name.isNull() || nonEmptyString(package.value(PackageKeys::published)).isNull()
            || nonEmptyString(package.value(PackageKeys::version)).isNull()) {
            refuse(u"package data do not containe name!"_s);
            continue;
        }
        listed.mayBeKept = listed.mayBeKept && !package.contains(PackageKeys::iconPath);
        listed.packages.append({name, package});
    }
    return listed;
}

bool PackageRecords::Order::operator()(const QString &a, const QString &b) const
{
    const int order = a.compare(b, Qt::CaseInsensitive);
    return order != 0 ? order < 0 : a < b;
}

QStringList PackageRecords::prefixes() const
{
    QStringList prefixes;
    QSet<QString> listed;
    for (const auto &[name, package] : m_byName) {
        const QString prefix = nonEmptyString(package.value(PackageKeys::prefix));
        if (!prefix.isNull() && !listed.contains(prefix)) {
            listed.insert(prefix);
            prefixes.append(prefix);
        }
    }
    return prefixes;
}

void PackageRecords::put(const QString &name, const Record &package)
{
    const QString prefix = nonEmptyString(package.value(PackageKeys::prefix));
    const auto known = m_byName.find(name);
    const QString former =
        known != m_byName.end() ? nonEmptyString(known->second.value(PackageKeys::prefix)) : QString();
    m_byName.insert_or_assign(name, package);
    if (prefix == former) {
        return;
    }
    if (const auto names = m_names.find(former); names != m_names.end()) {
        names->removeOne(name);
        if (names->isEmpty()) {
            m_names.erase(names);
        }
    }
    if (!prefix.isNull()) {
        QStringList &names = m_names[prefix];
        names.insert(std::lower_bound(names.cbegin(), names.cend(), name, Order()), name);
    }
}

} // namespace brevok
