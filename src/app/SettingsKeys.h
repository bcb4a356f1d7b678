// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLatin1StringView>

namespace brevok {

class SettingsStore;

/// The settings keys that the application itself owns; the other rooms name theirs beside their classes.
namespace AppKeys {
inline constexpr QLatin1StringView startAtLogin("OrlecStartAtLogin");
inline constexpr QLatin1StringView showNotifications("OrlecShowNotifications");
inline constexpr QLatin1StringView autoUpdate("OrlecAutoUpdate");
inline constexpr QLatin1StringView logLevel("OrlecLogLevel");
} // namespace AppKeys

/// Moves the values that earlier versions kept under unprefixed keys; a value under the new key is
/// overwritten.
void moveKeysOfEarlierVersions(SettingsStore &settings);

} // namespace brevok
