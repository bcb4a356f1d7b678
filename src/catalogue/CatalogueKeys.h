// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLatin1StringView>

/// Keys of the catalogue in the state store.
namespace brevok::CatalogueKeys {
inline constexpr QLatin1StringView pluginsData("OrlecPluginsData"); ///< an entry for every build
inline constexpr QLatin1StringView pluginPrefixes("OrlecPluginsData.Prefixes"); ///< which builds, in order
inline constexpr QLatin1StringView pluginList("OrlecPluginsData.List"); ///< which list that is
inline constexpr QLatin1StringView pluginsUpdateDate("OrlecPluginsUpdateDate");
inline constexpr QLatin1StringView packagesData("OrlecPackagesData"); ///< an entry for every name
inline constexpr QLatin1StringView packageList("OrlecPackagesData.List"); ///< which list those are
inline constexpr QLatin1StringView productsUpdateDate("OrlecProductsUpdateDate");
inline constexpr QLatin1StringView notifiedPackages("OrlecNotifiedPackages"); ///< an entry for every name
} // namespace brevok::CatalogueKeys
