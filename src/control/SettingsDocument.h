// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "surfaces/SettingsAccess.h"

#include <QJsonObject>

namespace brevok {

/// All settings that the user edits, by name.
[[nodiscard]] QJsonObject settingsDocument(const SettingsAccess &settings);

/// One of them, by its name or its key in the store; undefined where there is none.
[[nodiscard]] QJsonValue settingValue(const SettingsAccess &settings, const QString &key);

/// The sentence that refuses a key which is no setting's.
[[nodiscard]] QString noSuchSetting(const QString &key);

/// Sets one by its name ("startAtLogin") or its key in the store ("OrlecStartAtLogin") from a text: yes/no,
/// true/false, on/off, 1/0, or a number from 0 for the log level.
/// @return nothing when that counts now and @p waiter hears whether it is stored, or a sentence that says
/// what is wrong
[[nodiscard]] std::optional<QString> setSettingFromText(
    SettingsAccess &settings, const QString &key, const QString &value, StoreWaiter waiter);

} // namespace brevok
