// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QTest>

#include <array>
#include <tuple>
#include <type_traits>
#include <utility>

namespace brevok::testing {

/// A text of a table, which may stand there as a plain literal.
struct Words {
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

/// The columns of a test's table, in their order: declared in one call, and had back in one.
template <typename... Types> class Columns {
public:
    /// @return what adds a row, by its name and its values
    static auto declare()
    {
        declare(std::index_sequence_for<Types...>());
        return [](const QByteArray &name, const Given<Types> &...values) {
            QTestData &row = QTest::newRow(name.constData());
            ((row << static_cast<const Types &>(values)), ...);
        };
    }
    /// What the row says that is tested.
    [[nodiscard]] static std::tuple<Types...> row() { return row(std::index_sequence_for<Types...>()); }

private:
    template <typename Type> using Given = std::conditional_t<std::is_same_v<Type, QString>, Words, Type>;
    static constexpr std::array names{"1st", "2nd", "3rd", "4th", "5th", "6th"};

    template <size_t... At> static void declare(std::index_sequence<At...> /*places*/)
    {
        (QTest::addColumn<Types>(std::get<At>(names)), ...);
    }
    template <size_t... At> static std::tuple<Types...> row(std::index_sequence<At...> /*places*/)
    {
        return {*static_cast<Types *>(QTest::qData(std::get<At>(names), qMetaTypeId<Types>()))...};
    }
};

} // namespace brevok::testing
