// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok {

/// The settings that the user edits, as the application offers them to windows and to the bus. Main thread.
class SettingsAccess {
public:
    SettingsAccess() = default;
    virtual ~SettingsAccess() = default;
    Q_DISABLE_COPY_MOVE(SettingsAccess)

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

    /// Why what was set last is not stored; empty when it is.
    [[nodiscard]] virtual QString problem() const { return {}; }

    /// Whether the administrator decides the setting with this key in the store: setting it changes nothing.
    [[nodiscard]] virtual bool isLocked(const QString & /*key*/) const { return false; }
};

} // namespace brevok
