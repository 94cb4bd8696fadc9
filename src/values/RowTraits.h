#pragma once

#include "qmdatabase/values.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace values {

/// The numbers of a line in the order of the file's columns: the argument, then the value.
template <class Row>
struct RowTraits;

template <>
struct RowTraits<TABLEROW> {
    using Numbers = std::array<double, 2>;

    /// Rows are checked as they are met: the first fault ends the load.
    static constexpr bool reportsAtOnce = true;
    static constexpr std::string_view badComponent = "Bad table component [";

    static TABLEROW row(const Numbers& numbers) noexcept { return { numbers[0], numbers[1] }; }
    static Numbers numbers(const TABLEROW& row) noexcept { return { row.x, row.y }; }
};

template <>
struct RowTraits<TABLEROWVECT> {
    using Numbers = std::array<double, 4>;

    /// Rows are counted, and the count is logged, before any is checked: a fault is reported only when all
    /// have been read.
    static constexpr bool reportsAtOnce = false;
    static constexpr std::string_view badComponent = "Bad table vector component [";

    static TABLEROWVECT row(const Numbers& numbers) noexcept
    {
        return { numbers[0], numbers[1], numbers[2], numbers[3] };
    }
    static Numbers numbers(const TABLEROWVECT& row) noexcept { return { row.x, row.vx, row.vy, row.vz }; }
};

} // namespace values
