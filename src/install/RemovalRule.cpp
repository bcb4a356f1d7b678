// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/RemovalRule.h"

#include "catalogue/BrevokPackages.h"
#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/Texts.h"

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

QString neededByAnotherPackage()
{
    return Texts::tr("another package needs it");
}

bool canRemovePlugin(const QString &name, const QString &pluginPath, const QString &prefix,
    const CatalogueSnapshot &catalogue, const std::function<bool(const QString &path)> &exists)
{
    if (name.isEmpty() || pluginPath.isEmpty() || prefix.isEmpty()) {
        logLine(
            u"canRemovePlugin failed (%1, %2, %3)"_s.arg(orDash(name), orDash(pluginPath), orDash(prefix)));
        return false;
    }
    const QString folder = deletingLastPathComponent(pluginPath);
    return std::none_of(catalogue.packages.cbegin(), catalogue.packages.cend(), [&](const Record &package) {
        const QString other = package.value(PackageKeys::prefix).toString();
        // The maker's support packages never count as sharing a plug-in.
        if (other == prefix || isSupportPackage(other)) {
            return false;
        }
        const QList<Record> definitions = catalogue.definitions.value(other);
        const auto sharesPlugin = [&](const Record &definition) {
            return definition.value(PluginKeys::name).toString() == name;
        };
        const auto isInstalled = [&](const Record &definition) {
            return exists(
                folder + u'/' + definition.value(PluginKeys::name).toString() + u".InDesignPlugin"_s);
        };
        return std::any_of(definitions.cbegin(), definitions.cend(), sharesPlugin)
            && std::all_of(definitions.cbegin(), definitions.cend(), isInstalled);
    });
}

} // namespace brevok
