// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QVariant>

#include <optional>
#include <span>
#include <variant>

namespace brevok {

/// What a person chooses is kept in the settings file under these keys.
namespace SettingKeys {
inline constexpr QLatin1StringView startAtLogin("OrlecStartAtLogin");
inline constexpr QLatin1StringView showNotifications("OrlecShowNotifications");
inline constexpr QLatin1StringView autoUpdate("OrlecAutoUpdate");
inline constexpr QLatin1StringView logLevel("OrlecLogLevel");
inline constexpr QLatin1StringView automaticChecks("SUEnableAutomaticChecks");
/// Chosen in the updater's own window, and listed nowhere.
inline constexpr QLatin1StringView skippedVersion("SUSkippedVersion");
} // namespace SettingKeys

/// One row of the table of settings. The preferences, brevokctl and the administrator's policy read it; the
/// resource Brevok-Defaults, the completions and the manuals are held to it by a test.
struct Setting {
    enum class Type { Truth, Level };

    QLatin1StringView key;
    QLatin1StringView name; ///< in brevokctl and in the policy
    Type type = Type::Truth;
    int byDefault = 0; ///< as in Brevok-Defaults; 1 and 0 for yes and no
    const char *text = nullptr; ///< beside its check box, to be localised

    /// @p found, a value of whatever type, as one of this setting's.
    [[nodiscard]] QVariant valueFrom(int found) const;
};

/// The whole table, in the order in which people see it.
[[nodiscard]] std::span<const Setting> allSettings();

/// The setting with this name or key; null where there is none.
[[nodiscard]] const Setting *findSetting(const QString &nameOrKey);

/// What a word for yes (yes, true, on, 1) or no means, in whatever case.
[[nodiscard]] std::optional<bool> truthOf(const QString &word);

/// What @p text means for @p setting. @return that, or a sentence that says what is wrong, with @p name for
/// it
[[nodiscard]] std::variant<QVariant, QString> settingFromText(
    const Setting &setting, const QString &name, const QString &text);

} // namespace brevok
