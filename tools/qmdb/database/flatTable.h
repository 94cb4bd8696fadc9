#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "qmdatabase/values.h"

namespace tool {

/// One point of a value of any kind.
struct Point {
    std::array<double, 2> arguments {};
    std::array<double, 3> components {};
};

/// A value of any of the six kinds as a plain table.
struct Table {
    std::size_t arguments = 0; ///< how many of a point's arguments count: 0, 1 or 2
    std::size_t components = 1; ///< how many of a point's components count: 1 or 3
    std::vector<Point> points;
    std::vector<std::size_t> subtables {}; ///< of two arguments, as read: the first point of each
};

Table flatten(const IDbData& value);

/// The arguments and components of a point that count in its table.
std::vector<double> numbersOf(const Table& table, const Point& point);

/// Names of a type's arguments, first argument first. The library knows arguments by letters only.
std::vector<std::string_view> argumentNames(PARAM_TYPE type);

/// The letter of a type as descriptions write it; "?" for a type that is none.
std::string_view typeLetter(PARAM_TYPE type);

/// "constant", "table of T" and the like.
std::string typeText(PARAM_TYPE type);

/// Names of a value's components: none for a scalar, "x", "y", "z" for a vector.
std::string_view componentName(std::size_t components, std::size_t index);

} // namespace tool
