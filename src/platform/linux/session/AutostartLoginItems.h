// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Tasks.h"
#include "platform/LoginItems.h"

#include <QString>

#include <atomic>
#include <memory>

namespace brevok {

/// The session's autostart folder; the program's item is one desktop entry in it, which is
/// written in the background.
class AutostartLoginItems final : public LoginItems {
public:
    /// @p file is the desktop entry, @p displayName what session tools show for it.
    AutostartLoginItems(QString file, QString displayName);

    /// An entry that the user switched off in a session tool counts as absent.
    [[nodiscard]] bool contains(const QUrl &application) const override;
    void insert(const QUrl &application) override;
    void remove(const QUrl &application) override;
    void whenWritten(QObject *context, std::function<void(const QString &problem)> done) override;

private:
    /// @p onDisk runs in the background, and returns why it failed.
    void change(const QUrl &wanted, std::function<QString()> onDisk);

    QString m_file;
    QString m_displayName;
    SerialQueue m_disk;
    std::shared_ptr<std::atomic<int>> m_unwritten = std::make_shared<std::atomic<int>>(0); ///< changes
    std::shared_ptr<QString> m_problem = std::make_shared<QString>(); ///< the queue's: not yet told
    QUrl m_wanted; ///< what the entry is for once they are written; empty for none
};

} // namespace brevok
