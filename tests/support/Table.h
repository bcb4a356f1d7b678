// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QTest>

#include <initializer_list>
#include <tuple>
#include <type_traits>
#include <utility>

namespace brevok::testing {

/// A text of a table, which may stand there as a plain literal.
struct Words {
    Words() = default;
    Words(const char *literal)
        : text(QString::fromUtf8(literal))
    {
    }
    Words(QString given)
        : text(std::move(given))
    {
    }
    operator QString() const { return text; }
    QString text;
};

/// The rows of a test: its _data() makes one and calls it for each row, with the row's name and one value a
/// column.
template <typename... Columns> class Table final {
    template <typename Type> using Given = std::conditional_t<std::is_same_v<Type, QString>, Words, Type>;

public:
    Table() { QTest::addColumn<Row>("row"); }
    void operator()(const QByteArray &name, const Given<Columns> &...values) const
    {
        QTest::newRow(name.constData()) << Row{{static_cast<const Columns &>(values)...}};
    }
    /// The values of the row at hand.
    [[nodiscard]] static std::tuple<Columns...> current()
    {
        QFETCH(Row, row);
        return row.values;
    }
    // Qt would compare tuples, whatever is in them.
    struct Row {
        std::tuple<Columns...> values;
    };
};

/// The values of the row at hand, of the same types.
template <typename... Columns> [[nodiscard]] std::tuple<Columns...> columns()
{
    return Table<Columns...>::current();
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
