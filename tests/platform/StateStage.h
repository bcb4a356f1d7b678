// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/SqliteStateStore.h"

#include <QTest>

#include <sqlite3.h>

namespace brevok::testing {

inline const QString rows = QStringLiteral("Rows");

inline Record recordOf(int number)
{
    return {{QStringLiteral("Number"), number},
        {QStringLiteral("Text"), QString(200, QChar(u'a' + number % 26))}};
}

inline StateChanges numbered(int from, int to)
{
    StateChanges changes;
    for (int i = from; i < to; ++i) {
        changes.append({rows, QString::number(i), recordOf(i)});
    }
    return changes;
}

// Waits for the result of a commit: the reason, or an empty text for success.
inline QString resultOf(StateStore &store, const StateChanges &changes)
{
    QString reason = QStringLiteral("none came");
    store.commit(
        changes, &store, [&](const auto &error) { reason = error ? error->description : QString(); });
    return QTest::qWaitFor([&] { return reason != QStringLiteral("none came"); }, 30000)
        ? reason
        : QStringLiteral("none came");
}

inline bool makeState(const QString &path, int count)
{
    SqliteStateStore store(path);
    return resultOf(store, numbered(0, count)).isEmpty();
}

// Another program that works on the file.
class OtherProgram final {
public:
    explicit OtherProgram(const QString &path) { sqlite3_open(path.toUtf8().constData(), &m_db); }
    ~OtherProgram() { sqlite3_close(m_db); }
    Q_DISABLE_COPY_MOVE(OtherProgram)
    [[nodiscard]] bool run(const char *sql)
    {
        return sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
    }

private:
    sqlite3 *m_db = nullptr;
};

} // namespace brevok::testing
