// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Tasks.h"

#include <QHash>
#include <QList>

namespace brevok {

/// Of the work that has a key in common, only so many pieces go on at once; the others wait in line. One
/// thread.
template <typename Key> class Turns final {
public:
    explicit Turns(int most)
        : m_most(most)
    {
    }

    /// Begins @p work, now or in some leave().
    void enter(const Key &key, Task work)
    {
        Line &line = m_lines[key];
        if (line.going == m_most) {
            line.waiting.append(std::move(work));
            return;
        }
        ++line.going;
        work();
    }

    /// Something that was begun has come to its end.
    void leave(const Key &key)
    {
        Line &line = m_lines[key];
        if (!line.waiting.isEmpty()) {
            const Task next = line.waiting.takeFirst();
            next();
        } else if (--line.going == 0) {
            m_lines.remove(key);
        }
    }

    [[nodiscard]] qsizetype waiting(const Key &key) const { return m_lines.value(key).waiting.size(); }

private:
    struct Line {
        int going = 0;
        QList<Task> waiting{};
    };
    const int m_most;
    QHash<Key, Line> m_lines;
};

} // namespace brevok
