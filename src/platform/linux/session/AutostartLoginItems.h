// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Tasks.h"
#include "platform/LoginItems.h"

#include <QString>

#include <atomic>
#include <memory>
#include <utility>

namespace brevok {

/// The session's autostart folder; the program's item is one desktop entry in it, which is
/// written in the background.
class AutostartLoginItems final : public LoginItems {
public:
    /// @p file is the desktop entry, @p displayName what session tools show for it.
    AutostartLoginItems(QString file, QString displayName);

    /// An entry that the user switched off in a session tool counts as absent.
    [[nodiscard]] bool contains(const QUrl &application) const override;
    void set(const QUrl &application, bool wanted, StoreWaiter waiter) override;

private:
    QString m_file;
    QString m_displayName;
    SerialQueue m_disk;
    std::shared_ptr<std::atomic<int>> m_unwritten = std::make_shared<std::atomic<int>>(0); ///< changes
    std::pair<QUrl, bool> m_lastChange;
};

} // namespace brevok
