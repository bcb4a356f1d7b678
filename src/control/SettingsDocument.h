// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/SettingsAccess.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace brevok {

/// All settings that the user edits, by name.
[[nodiscard]] QJsonObject settingsDocument(const SettingsAccess &settings);

/// Sets one by its name ("startAtLogin") or its key in the store ("OrlecStartAtLogin") from a text: yes/no,
/// true/false, on/off, 1/0, or a number from 0 for the log level.
/// @return nothing, or a sentence that says what is wrong; then nothing was changed
[[nodiscard]] std::optional<QString> setSettingFromText(
    SettingsAccess &settings, const QString &key, const QString &value);

} // namespace brevok
