// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTest>

#include <tuple>

namespace brevok::testing {

/// The rows of a test: its _data() makes one and calls it for each row, with the row's name and one value a column.
template <typename... Columns> class Table final {
public:
    Table() { QTest::addColumn<Row>("row"); }
    void operator()(const QByteArray &name, const Columns &...values) const
    {
        QTest::newRow(name.constData()) << Row{{values...}};
    }
    // Qt would compare tuples, whatever is in them.
    struct Row {
        std::tuple<Columns...> values;
    };
};

/// The values of the row at hand, of the same types.
template <typename... Columns> [[nodiscard]] std::tuple<Columns...> columns()
{
    QFETCH(typename Table<Columns...>::Row, row);
    return row.values;
}

/// The rows of a test that goes by their names alone, which currentRow() tells.
inline void addRows(std::initializer_list<const char *> names)
{
    const Table<bool> row;
    for (const char *name : names) {
        row(name, true);
    }
}

[[nodiscard]] inline QString currentRow()
{
    return QString::fromUtf8(QTest::currentDataTag());
}

} // namespace brevok::testing
