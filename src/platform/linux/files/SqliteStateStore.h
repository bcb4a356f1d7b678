// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/SqliteFile.h"
#include "platform/linux/files/StoreWorker.h"

#include <mutex>

namespace brevok {

/// The state in one SQLite file, which only the user may read. See StateStore.
class SqliteStateStore final : public StateStore {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SqliteStateStore)

public:
    /// @p retry is how long what could not be stored waits until it is tried again without a change.
    explicit SqliteStateStore(const QString &path, std::chrono::milliseconds retry = std::chrono::minutes(1),
        QObject *parent = nullptr);
    ~SqliteStateStore() override;

    [[nodiscard]] bool isReadable() const override { return m_readable; }
    [[nodiscard]] StateEntries entries(const QString &key) override;
    [[nodiscard]] bool finish(int milliseconds) override;
    [[nodiscard]] QString problem() const override { return m_problem; }

protected:
    void add(StateChanges changes, StoreWaiter waiter) override;

private:
    /// What the worker writes in one go, and what became of it.
    struct Batch {
        StateChanges changes;
        QList<StateChanges> further{}; ///< came while the others were written
        QList<StoreWaiter> waiters;
        SqliteFile::Result result{.state = SqliteFile::Result::State::Shortage};
        QString keptAs{}; ///< the file was damaged and set aside
    };

    void startBatch();
    void handleBatch();
    void carryOut(Batch &batch);
    [[nodiscard]] StateChanges further(Batch &batch);
    void rescue(const QString &reason);
    void say(const SqliteFile::Result &result);
    void sayDamaged(const QString &keptAs);

    QString m_path;
    SqliteFile m_file; ///< the worker's while a batch is under way
    std::mutex m_mutex; ///< of the next two, while a batch is under way
    StateChanges m_waiting;
    QList<StoreWaiter> m_waiters;
    std::shared_ptr<Batch> m_batch; ///< under way
    bool m_readable = true;
    QString m_problem;
    StoreWorker m_worker; ///< goes first
};

} // namespace brevok
