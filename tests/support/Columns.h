// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTest>

#include <array>
#include <tuple>
#include <utility>

namespace brevok::testing {

/// The columns of a test's table, in their order: declared in one call, and had back in one.
template <typename... Types> class Columns {
public:
    static void declare() { declare(std::index_sequence_for<Types...>()); }
    /// What the row says that is tested.
    [[nodiscard]] static std::tuple<Types...> row() { return row(std::index_sequence_for<Types...>()); }

private:
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
