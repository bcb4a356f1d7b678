// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Settings.h"
#include "platform/StoreWaiter.h"

namespace brevok {

/// The settings that the user edits, as the application offers them to windows and to the bus. Main thread.
class SettingsAccess {
public:
    SettingsAccess() = default;
    virtual ~SettingsAccess() = default;
    Q_DISABLE_COPY_MOVE(SettingsAccess)

    /// What counts now, as a value of the setting's type.
    [[nodiscard]] virtual QVariant setting(const Setting &setting) const = 0;
    /// Counts at once, unless the administrator decides the setting; @p waiter hears whether it is stored.
    virtual void setSetting(const Setting &setting, const QVariant &value, StoreWaiter waiter) = 0;
    /// Whether the administrator decides the setting: setting it changes nothing.
    [[nodiscard]] virtual bool isLocked(const Setting &setting) const = 0;
};

} // namespace brevok
