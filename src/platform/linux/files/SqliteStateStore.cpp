// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/SqliteStateStore.h"

#include "foundation/Log.h"

#include <tuple>

namespace brevok {

using namespace Qt::StringLiterals;
using State = SqliteFile::Result::State;

namespace {

// Another program holds the lock for the time of one write.
constexpr int patienceAtReadMs = 250;
constexpr int patienceAtWriteMs = 5000;

// The last change of every entry.
StateChanges compacted(const StateChanges &changes)
{
    QHash<std::pair<QString, QString>, qsizetype> last;
    for (qsizetype i = 0; i < changes.size(); ++i) {
        last.insert({changes[i].key, changes[i].entry}, i);
    }
    StateChanges kept;
    for (qsizetype i = 0; i < changes.size(); ++i) {
        if (last.value({changes[i].key, changes[i].entry}) == i) {
            kept.append(changes[i]);
        }
    }
    return kept;
}

void apply(const StateChanges &changes, const QString &key, StateEntries *entries)
{
    for (const StateChange &change : changes) {
        if (change.key != key) {
            continue;
        }
        if (change.value) {
            entries->insert(change.entry, *change.value);
        } else {
            entries->remove(change.entry);
        }
    }
}

} // namespace

SqliteStateStore::SqliteStateStore(const QString &path, std::chrono::milliseconds retry, QObject *parent)
    : StateStore(parent)
    , m_path(path)
    , m_file(path)
    , m_worker(retry, [this] { startBatch(); })
{
}

SqliteStateStore::~SqliteStateStore()
{
    std::ignore = SqliteStateStore::finish(-1);
}

StateEntries SqliteStateStore::entries(const QString &key)
{
    m_worker.wait();
    StateEntries found;
    SqliteFile::Result result;
    if (m_readable) {
        result = m_file.read(key, patienceAtReadMs, &found);
    }
    if (result.state == State::Damaged) {
        found.clear();
        rescue(result.reason);
    } else if (result.state != State::Done) {
        found.clear();
        m_readable = !result.hides;
        m_worker.dueLater();
        onMain(this, [this, result] { say(result); });
    }
    if (m_batch) {
        apply(m_batch->changes, key, &found);
    }
    apply(m_waiting, key, &found);
    return found;
}

void SqliteStateStore::rescue(const QString &reason)
{
    StateChanges rescued;
    const QString keptAs = m_file.setAside(&rescued);
    m_waiting = rescued + m_waiting;
    m_worker.dueSoon();
    if (keptAs.isEmpty()) {
        // It stays where it is, and the write that follows says so.
        logLine(u"The state in %1 is damaged: %2"_s.arg(m_path, reason));
        return;
    }
    onMain(this, [this, keptAs] { sayDamaged(keptAs); });
}

void SqliteStateStore::sayDamaged(const QString &keptAs)
{
    logLine(u"The state in %1 was damaged; it was kept as %2, and what could be read of it is in use."_s.arg(
        m_path, keptAs));
    Q_EMIT damaged(keptAs);
}

void SqliteStateStore::add(StateChanges changes, StoreWaiter waiter)
{
    {
        const std::scoped_lock lock(m_mutex);
        m_waiting.isEmpty() ? m_waiting.swap(changes) : m_waiting.append(std::move(changes));
        if (waiter.isThere()) {
            m_waiters.append(std::move(waiter));
        }
    }
    if (!m_batch) {
        m_worker.dueSoon();
    }
}

void SqliteStateStore::startBatch()
{
    if (m_batch) {
        return; // its end begins the next
    }
    m_worker.rest();
    m_batch = std::make_shared<Batch>();
    m_batch->changes = std::exchange(m_waiting, {});
    m_batch->waiters = std::exchange(m_waiters, {});
    if (m_batch->changes.isEmpty() && m_problem.isEmpty() && m_readable) {
        m_batch->result = {};
        onMain(this, [this] { handleBatch(); });
        return;
    }
    m_worker.run([this, batch = m_batch] { carryOut(*batch); }, [this] { handleBatch(); });
}

// On the worker, or after it.
void SqliteStateStore::carryOut(Batch &batch)
{
    batch.result = m_file.write(batch.changes, patienceAtWriteMs, [&] { return further(batch); });
    const QList<StateChanges> more = std::exchange(batch.further, {});
    if (batch.result.state == State::Done) {
        // Freeing many takes its time.
        inBackground([stored = std::exchange(batch.changes, {}), more] {});
        return;
    }
    for (const StateChanges &changes : more) {
        batch.changes += changes;
    }
    if (batch.result.state != State::Damaged) {
        return;
    }
    StateChanges rescued;
    batch.keptAs = m_file.setAside(&rescued);
    if (!batch.keptAs.isEmpty()) {
        batch.changes = rescued + batch.changes;
        batch.result = m_file.write(batch.changes, patienceAtWriteMs);
        batch.result.lost = true;
    }
}

// What comes while rows are written goes with them: a long list is stored while it is still being merged.
StateChanges SqliteStateStore::further(Batch &batch)
{
    const std::scoped_lock lock(m_mutex);
    StateChanges changes = std::exchange(m_waiting, {});
    batch.further.append(changes);
    batch.waiters += std::exchange(m_waiters, {});
    return changes;
}

void SqliteStateStore::handleBatch()
{
    if (!m_batch) {
        return; // finish() was faster
    }
    const Batch batch = *std::exchange(m_batch, {});
    const bool stored = batch.result.state == State::Done;
    if (!batch.keptAs.isEmpty()) {
        sayDamaged(batch.keptAs);
    }
    if (!stored) {
        m_waiting = compacted(batch.changes + m_waiting);
        m_worker.dueLater();
    }
    if (!m_waiters.isEmpty() || (stored && !m_waiting.isEmpty())) {
        m_worker.dueSoon();
    }
    say(batch.result);
    if (stored && !std::exchange(m_readable, true)) {
        Q_EMIT becameReadable();
    }
    if (batch.result.lost) {
        Q_EMIT everythingWanted();
    }
    const std::optional<BrevokError> error = stored
        ? std::nullopt
        : std::optional(BrevokError{.domain = u"com.tolvane.brevok.state"_s,
            .code = 1,
            .description = u"It could not be stored in %1: %2"_s.arg(m_path, batch.result.reason)});
    for (const StoreWaiter &waiter : batch.waiters) {
        waiter.tell(error);
    }
}

// One line tells of a full disk, not one for every change that is kept meanwhile.
void SqliteStateStore::say(const SqliteFile::Result &result)
{
    const bool trouble = result.state != State::Done;
    const bool wasTrouble = !std::exchange(m_problem, result.reason).isEmpty();
    if (trouble == wasTrouble) {
        return;
    }
    if (trouble) {
        logLine(u"The state cannot be %1 %2: %3"_s.arg(
            m_readable ? u"stored in"_s : u"read from"_s, m_path, result.reason));
        Q_EMIT troubled(result.reason);
    } else {
        logLine(u"The state is stored in %1 again."_s.arg(m_path));
        Q_EMIT mended();
    }
}

bool SqliteStateStore::finish(int milliseconds)
{
    const auto waited = [this, milliseconds] {
        const bool done = m_worker.wait(milliseconds);
        if (!done) {
            logLine(u"The state could not be stored in %1: the disk does not answer."_s.arg(m_path));
        }
        return done;
    };
    if (!waited()) {
        return false;
    }
    if (m_batch && m_batch->result.state == State::Done) {
        m_batch.reset();
    }
    StateChanges changes = m_batch ? m_batch->changes : StateChanges();
    changes += std::exchange(m_waiting, {});
    m_batch.reset();
    if (changes.isEmpty()) {
        return true;
    }
    const auto last = std::make_shared<Batch>(Batch{.changes = compacted(changes), .waiters = {}});
    m_worker.run([this, last] { carryOut(*last); });
    if (!waited()) {
        return false;
    }
    if (last->result.state != State::Done) {
        m_waiting = last->changes;
        logLine(u"The state could not be stored in %1: %2"_s.arg(m_path, last->result.reason));
    }
    return true;
}

} // namespace brevok
