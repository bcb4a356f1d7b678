// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"

#include <QString>

namespace brevok {

class SettingsStore;

/// Settings keys of the catalogue.
namespace CatalogueSettings {
inline constexpr QLatin1StringView pluginsData("OrlecPluginsData");
inline constexpr QLatin1StringView pluginsUpdateDate("OrlecPluginsUpdateDate");
inline constexpr QLatin1StringView packagesData("OrlecPackagesData");
inline constexpr QLatin1StringView productsUpdateDate("OrlecProductsUpdateDate");
inline constexpr QLatin1StringView notifiedPackages("OrlecNotifiedPackages");
} // namespace CatalogueSettings

/// The archived dictionary under @p key; empty when there is none. What cannot be read is set aside.
[[nodiscard]] Record storedDictionary(SettingsStore &settings, const QString &key);

} // namespace brevok
