// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/FileDescriptor.h"

#include <QByteArrayList>

namespace brevok {

/// A hidden folder inside another one, where entries are made complete before they get their final names.
/// It is locked while it lives; what crashed runs left is removed when the next one is made. In a process
/// with root's rights it is one that only root can look into, whoever owns the folder around it, or there is
/// none.
class StagingFolder final {
public:
    /// @p folder must stay open as long as this lives.
    explicit StagingFolder(int folder);
    ~StagingFolder();
    Q_DISABLE_COPY_MOVE(StagingFolder)

    /// Removes what crashed runs left in @p folder. @return whether there was anything
    static bool removeStale(int folder);

    /// Whether it could be made; errno tells why not.
    [[nodiscard]] explicit operator bool() const { return static_cast<bool>(m_staging); }
    [[nodiscard]] int descriptor() const { return m_staging.get(); }

    /// What becomes of an entry that already bears a name.
    enum class Existing { Refused, Replaced };

    /// When what is published is safe from a power cut.
    enum class Safe { Before, Later };

    /// Moves the entries @p names to the folder, all or none, once everything inside is on the disk, unless
    /// the caller sees to that later. What is replaced goes with this folder.
    /// @return false with errno set and the entry that failed in @p where
    [[nodiscard]] bool publish(
        const QByteArrayList &names, Existing existing, QByteArray *where, Safe safe = Safe::Before);

private:
    [[nodiscard]] bool make();
    [[nodiscard]] bool move(const QByteArray &name, Existing existing);

    int m_folder;
    QByteArray m_name;
    FileDescriptor m_staging;
};

} // namespace brevok
