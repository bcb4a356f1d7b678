// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonObject>
#include <QString>

#include <optional>

namespace brevok {

/// The settings that the user edits, as the application offers them to windows and to the bus. Main thread.
class ApplicationSettings {
public:
    ApplicationSettings() = default;
    virtual ~ApplicationSettings() = default;
    Q_DISABLE_COPY_MOVE(ApplicationSettings)

    [[nodiscard]] virtual bool startAtLogin() const = 0;
    virtual void setStartAtLogin(bool enabled) = 0;
    [[nodiscard]] virtual bool showNotifications() const = 0;
    virtual void setShowNotifications(bool enabled) = 0;
    [[nodiscard]] virtual bool checkForUpdates() const = 0;
    virtual void setCheckForUpdates(bool enabled) = 0;
    [[nodiscard]] virtual bool autoUpdate() const = 0;
    virtual void setAutoUpdate(bool enabled) = 0;
    [[nodiscard]] virtual int logLevel() const = 0;
    virtual void setLogLevel(int level) = 0;
};

/// All of them, by name.
[[nodiscard]] QJsonObject settingsDocument(const ApplicationSettings &settings);

/// Sets one by its name ("startAtLogin") or its key in the store ("OrlecStartAtLogin") from a text: yes/no,
/// true/false, on/off, 1/0, or a number from 0 for the log level.
/// @return nothing, or a sentence that says what is wrong; then nothing was changed
[[nodiscard]] std::optional<QString> setSettingFromText(
    ApplicationSettings &settings, const QString &key, const QString &value);

} // namespace brevok
