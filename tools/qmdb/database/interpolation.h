#pragma once

#include "database/flatTable.h"

#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace tool {

struct Range {
    double least = 0;
    double most = 0;
};

/// An argument that a table does not reach.
struct Outside {
    std::size_t argument = 0;
    double wanted = 0;
    Range range;
    std::optional<double> first; ///< the first argument of the subtable that does not reach the second
};

enum class Method {
    Linear, ///< exact at the points of the table
    Nearest, ///< the point of the table next to what is asked for, the lower one of two
};

/// Reads a table between its points: along the last argument, then, between the two subtables around it,
/// along the first. Nothing is read outside the table.
class Interpolation {
public:
    /// Throws Failure when the arguments of the table do not increase. The table has to stay.
    explicit Interpolation(const Table& table);

    /// As many arguments as the table has. With Method::Nearest the point has its own arguments.
    std::variant<Point, Outside> at(std::span<const double> arguments, Method method) const;

private:
    /// The points of one first argument; all of a table of one argument.
    using Run = std::span<const Point>;

    std::variant<Point, Outside> along(Run run, double wanted, Method method) const;
    std::variant<Point, Outside> between(Run low, Run high, std::span<const double> arguments) const;
    double last(const Point& point) const { return point.arguments[last_]; }

    std::size_t last_; ///< the argument that runs within a subtable
    std::vector<Run> runs_;
};

} // namespace tool
