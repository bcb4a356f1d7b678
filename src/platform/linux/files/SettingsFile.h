// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/PrivateFile.h"

#include <QVariantMap>

namespace brevok {

/// The settings in one text file that people can read and edit (see SettingsText.h). Blocks; one thread at a
/// time.
///
/// The file is replaced whole, under a lock, so that readers never see half of one; what other programs wrote
/// meanwhile is merged by key. What can never be read is renamed to "FILE.unreadable-DATE-TIME"; the values
/// known so far are kept, and written again.
class SettingsFile final {
public:
    explicit SettingsFile(const QString &path);

    [[nodiscard]] const QString &path() const { return m_path; }
    /// What the file held when it was last read or written.
    [[nodiscard]] const QVariantMap &values() const { return m_values; }

    /// Takes in what the file holds now. @return why that cannot be known now; empty when it is
    [[nodiscard]] QString read();
    /// The same, and then writes @p changes, where an invalid value removes its key.
    /// @return why they cannot be written now; empty when they are on the disk
    [[nodiscard]] QString write(const QVariantMap &changes);

private:
    [[nodiscard]] QString moveAside(const QString &reason);
    [[nodiscard]] QString replace(const QVariantMap &values);

    QString m_path;
    QVariantMap m_values;
    FileState m_stamp;
    bool m_isGone = false; ///< with the values, which are known all the same
};

} // namespace brevok
