// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/KeptList.h"
#include "catalogue/PackageRecords.h"
#include "platform/StateStore.h"

#include <optional>

namespace brevok {

/// The package records, and their entries in the state store. Main thread.
class PackageStore final {
public:
    explicit PackageStore(StateStore &state);

    [[nodiscard]] const PackageRecords &records() const { return m_records; }
    /// The list of the service that the records stand for.
    [[nodiscard]] const KeptList &kept() const { return m_kept; }
    /// The names that this list holds; the other records are from earlier ones.
    [[nodiscard]] QStringList listed() const;

    /// Reads what is stored. @return how many values were unusable, and left out
    int load();
    void put(const QString &name, const Record &package);
    /// From the next save() on the records stand for @p list, which holds the names @p listed; for none when
    /// it is empty.
    void setKept(const KeptList &list, const QSet<QString> &listed);
    /// The same records, under another validator.
    void setKept(const KeptList &list);

    /// Stores what changed. While @p iconsComing, a record that lost only its icon waits: it gets it again.
    void save(bool iconsComing);
    /// The changes that store everything.
    [[nodiscard]] StateChanges everything();

private:
    [[nodiscard]] StateChange listChange();

    StateStore &m_state;
    PackageRecords m_records;
    /// What the store still holds of the records that changed; nothing where it has no entry.
    QHash<QString, std::optional<Record>> m_unsaved;
    KeptList m_kept;
    QSet<QString> m_unlisted; ///< names that the kept list does not hold
    bool m_listUnsaved = false;
};

} // namespace brevok
