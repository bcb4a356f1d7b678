// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

namespace brevok {

/// Remembers over a crash or a power cut which item was being worked on: one small file for each piece of
/// work, there from before its first step until after its last. Any thread.
class WorkJournal final {
public:
    struct Entry {
        QString id{}; ///< what end() takes
        QString target{}; ///< empty when the entry was cut short, which is before any work
        bool removal = false;
        bool fresh = false; ///< there was no such item before
        bool rebooted = false; ///< the system was started anew since
    };

    /// @p folder exists and belongs to this process alone.
    explicit WorkJournal(QString folder)
        : m_folder(std::move(folder))
    {
    }

    [[nodiscard]] const QString &folder() const { return m_folder; }
    /// @return the entry's id when it is on the disk, else nothing with the reason in errno
    [[nodiscard]] QString begin(const QString &target, bool removal, bool fresh) const;
    void end(const QString &id) const;
    /// What was begun and not ended.
    [[nodiscard]] QList<Entry> entries() const;

private:
    QString m_folder;
};

} // namespace brevok
