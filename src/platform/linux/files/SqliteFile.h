// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/StateStore.h"

#include <memory>

struct sqlite3;
struct sqlite3_stmt;

namespace brevok {

/// Entries in one SQLite file. Not bound to a thread, but used by one at a time.
class SqliteFile final {
public:
    struct Result {
        enum class State {
            Done,
            Shortage, ///< not now: no space, no right, locked, something else in the file's place
            Damaged, ///< the content is broken; setAside() is what helps
            Newer, ///< written by a later version of the program, and left alone
        };
        State state = State::Done;
        QString reason{}; ///< when not Done
        bool hides = false; ///< when not Done: there is content that could not be read
        bool lost = false; ///< the file that was open is gone, and a new one was begun
    };

    explicit SqliteFile(QString path);
    ~SqliteFile();
    Q_DISABLE_COPY_MOVE(SqliteFile)

    /// Reads what stands under @p key. A file that does not exist is empty, and is not made by this.
    [[nodiscard]] Result read(const QString &key, int patienceMs, StateEntries *entries);
    /// Makes all changes or none; when this returns Done they outlast a power cut. What @p further gives goes
    /// with them, until it gives none.
    [[nodiscard]] Result write(
        const StateChanges &changes, int patienceMs, const std::function<StateChanges()> &further = {});
    /// Moves the damaged file out of the way and gives what can still be read of it to @p rescued.
    /// @return its new name; empty when it could not be moved
    [[nodiscard]] QString setAside(StateChanges *rescued);

private:
    using Statement = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt *)>;

    [[nodiscard]] Result open(bool create, int patienceMs);
    [[nodiscard]] Result connect();
    [[nodiscard]] Result change(const StateChanges &changes);
    [[nodiscard]] bool wasMoved() const;
    [[nodiscard]] bool run(const char *sql) const;
    [[nodiscard]] Statement prepare(const char *sql) const;
    [[nodiscard]] qint64 number(const char *sql) const;
    [[nodiscard]] Result failure() const;
    [[nodiscard]] StateChanges readable() const;
    void close();

    QString m_path;
    sqlite3 *m_db = nullptr;
    bool m_lost = false; ///< not yet told
};

} // namespace brevok
