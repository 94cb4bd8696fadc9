#pragma once

#include <compare>
#include <random>
#include <string>

namespace bench {

/// The engine alone, never a distribution: what a distribution gives depends on the library.
using Random = std::mt19937_64;

/// The six kinds of value.
enum class ValueKind { constant, constantVector, table, tableVector, table2D, table2DVector };

constexpr bool isVector(ValueKind kind) noexcept
{
    return kind == ValueKind::constantVector || kind == ValueKind::tableVector
        || kind == ValueKind::table2DVector;
}

constexpr bool isTwoDimensional(ValueKind kind) noexcept
{
    return kind == ValueKind::table2D || kind == ValueKind::table2DVector;
}

/// A value of one kind; rows are those of each subtable.
struct ValueShape {
    ValueKind kind = ValueKind::constant;
    long subtables = 1;
    long rows = 1;
};

/// The text of a data file.
std::string valueText(const ValueShape& shape, Random& random);

} // namespace bench
