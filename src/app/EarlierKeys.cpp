// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/EarlierKeys.h"

#include "catalogue/CatalogueKeys.h"
#include "foundation/Settings.h"
#include "platform/SettingsStore.h"
#include "targets/BrevokTargetApps.h"

#include <array>

namespace brevok {

namespace {

enum class Kind { Bool, Float, Object };

struct MovedKey {
    QLatin1StringView before;
    QLatin1StringView now;
    Kind kind;
};

constexpr std::array movedKeys{
    MovedKey{QLatin1StringView("startAtLogin"), SettingKeys::startAtLogin, Kind::Bool},
    MovedKey{QLatin1StringView("sessionData"), QLatin1StringView("OrlecSessionData"), Kind::Object},
    MovedKey{QLatin1StringView("sessionVersion"), QLatin1StringView("OrlecSessionVersion"), Kind::Float},
    MovedKey{QLatin1StringView("targetsGathered"), TargetSettings::gathered, Kind::Bool},
    MovedKey{QLatin1StringView("targets"), TargetSettings::data, Kind::Object},
    MovedKey{QLatin1StringView("packages"), CatalogueKeys::packagesData, Kind::Object},
    MovedKey{QLatin1StringView("plugins"), CatalogueKeys::pluginsData, Kind::Object},
};

QVariant movedValue(const SettingsStore &settings, const MovedKey &key)
{
    const QString before(key.before);
    switch (key.kind) {
    case Kind::Bool:
        return settings.boolValue(before);
    case Kind::Float:
        return settings.floatValue(before);
    case Kind::Object:
        break;
    }
    return settings.value(before);
}

} // namespace

void moveKeysOfEarlierVersions(SettingsStore &settings)
{
    for (const MovedKey &key : movedKeys) {
        if (settings.contains(QString(key.before))) {
            settings.setValue(QString(key.now), movedValue(settings, key));
            settings.remove(QString(key.before));
        }
    }
}

} // namespace brevok
