// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTest>

#include <cstdio>

namespace brevok::testing {

/// A round of a loop over a table: where a check failed in it, the log says which row that was.
class InRow final {
public:
    explicit InRow(const char *name)
        : m_name(name)
    {
    }
    ~InRow()
    {
        if (QTest::currentTestFailed()) {
            std::fprintf(stderr, "in the row '%s'\n", m_name); // even where a test keeps the log
        }
    }
    Q_DISABLE_COPY_MOVE(InRow)

private:
    const char *m_name;
};

} // namespace brevok::testing
