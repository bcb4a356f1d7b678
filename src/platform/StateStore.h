// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/PackedRecord.h"
#include "platform/StoreWaiter.h"

#include <QDateTime>
#include <QHash>
#include <QObject>

namespace brevok {

/// One entry put under a key, or removed when it has no value.
struct StateChange {
    QString key;
    QString entry;
    std::optional<PackedRecord> value;
};
using StateChanges = QList<StateChange>;
/// What stands under one key.
using StateEntries = QHash<QString, PackedRecord>;

/// What the program itself keeps between runs: dictionaries under a key and the name of an entry. Main
/// thread.
///
/// A change counts for entries() at once and is written by a worker in one transaction with those before it.
/// What cannot be written now (a full disk, a lock, a missing right) stays in memory and is tried again with
/// the next change and from time to time. Only a damaged file is set aside.
class StateStore : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(StateStore)

public:
    using Done = StoreDone;

    explicit StateStore(QObject *parent = nullptr);
    ~StateStore() override;

    /// False while there is a file that cannot be read for now: its content is neither known nor lost, so
    /// nothing may be written that depends on it. becameReadable() follows.
    [[nodiscard]] virtual bool isReadable() const = 0;

    /// All entries under @p key, as the next start will find them. Reads the disk: for the start, and after
    /// becameReadable().
    [[nodiscard]] virtual StateEntries entries(const QString &key) = 0;

    /// Puts and removes entries, all or none. @p done hears, on a later turn of the event loop and while
    /// @p context lives, what became of these changes and all before them; no changes: of those before.
    void commit(StateChanges changes, QObject *context, Done done);
    void commit(StateChanges changes) { commit(std::move(changes), nullptr, {}); }

    /// Stores what waits, before the program ends. Blocks.
    /// @return false, with a line in the log, when the disk does not answer for @p milliseconds (-1: for
    /// ever): a thread then still works on it, and the end of this object waits for that
    [[nodiscard]] virtual bool finish(int milliseconds) = 0;
    /// Why nothing can be stored (or read) now; empty in good weather.
    [[nodiscard]] virtual QString problem() const = 0;

    /// A key that holds one value.
    [[nodiscard]] QJsonValue value(const QString &key);
    void setValue(const QString &key, const QJsonValue &value);
    /// An absent value and one that is no date read as the distant past.
    [[nodiscard]] QDateTime date(const QString &key);
    void setDate(const QString &key, const QDateTime &date);

    /// The entry that holds such a value, and a value's form in it.
    [[nodiscard]] static StateChange valueChange(const QString &key, const QJsonValue &value);
    [[nodiscard]] static Record dateRecord(const QDateTime &date);
    [[nodiscard]] static QDateTime dateOf(const Record &record);

Q_SIGNALS:
    /// Load again: what was kept from the reader is there now.
    void becameReadable();
    /// The file is gone or was damaged while the program ran: whoever keeps entries puts them all again.
    void everythingWanted();
    /// Nothing can be stored (or read) for the given reason; said once until mended().
    void troubled(const QString &reason);
    void mended();
    /// The file was damaged; it was kept as @p keptAs, and what could be read of it is in use.
    void damaged(const QString &keptAs);

protected:
    virtual void add(StateChanges changes, StoreWaiter waiter) = 0;
};

} // namespace brevok
