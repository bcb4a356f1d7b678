// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>

#include <sys/types.h>

namespace brevok {

/// Who somebody is to the file system.
struct UserRights {
    uid_t user = 0;
    QList<gid_t> groups{};
};

/// While this lives, the calling thread of a process with root's rights has those of somebody else on files:
/// the system itself decides then what they may see, by modes, access control lists and whatever else there
/// is.
class BorrowedRights final {
public:
    explicit BorrowedRights(const UserRights &rights);
    ~BorrowedRights();
    Q_DISABLE_COPY_MOVE(BorrowedRights)

    /// Whether they could be had.
    [[nodiscard]] explicit operator bool() const { return m_borrowed; }

private:
    QList<gid_t> m_own;
    bool m_borrowed = false;
};

} // namespace brevok
