#include "database/valueObjects.h"

#include <span>

namespace tool {

namespace {

/// A point as a row over its last argument.
template <class Row>
Row rowOf(const Point& point, std::size_t arguments);

template <>
TABLEROW rowOf(const Point& point, std::size_t arguments)
{
    return { point.arguments[arguments - 1], point.components[0] };
}

template <>
TABLEROWVECT rowOf(const Point& point, std::size_t arguments)
{
    const auto& [x, y, z] = point.components;
    return { point.arguments[arguments - 1], x, y, z };
}

/// New rows, which the value that takes them frees.
template <class Row>
Row* newRows(std::span<const Point> points, std::size_t arguments)
{
    auto rows = std::make_unique<Row[]>(points.size());
    std::ranges::transform(
        points, rows.get(), [&](const Point& point) { return rowOf<Row>(point, arguments); });
    return rows.release();
}

template <class Value, class Row>
std::unique_ptr<IDbData> oneDimensional(const Table& table)
{
    auto value = std::make_unique<Value>();
    value->rows = newRows<Row>(table.points, table.arguments);
    value->count = static_cast<long>(table.points.size());
    return value;
}

/// Cuts the points into runs of one first argument.
std::vector<std::span<const Point>> runsOf(std::span<const Point> points)
{
    std::vector<std::span<const Point>> runs;
    while (!points.empty()) {
        const double first = points.front().arguments[0];
        const auto end
            = std::ranges::find_if(points, [&](const Point& point) { return point.arguments[0] != first; });
        const auto length = static_cast<std::size_t>(end - points.begin());
        runs.push_back(points.first(length));
        points = points.subspan(length);
    }
    return runs;
}

template <class Value, class Row>
std::unique_ptr<IDbData> twoDimensional(const Table& table)
{
    auto value = std::make_unique<Value>();
    const auto runs = runsOf(table.points);
    value->subtables = std::make_unique<QMDB_SUBTABLE<Row>[]>(runs.size()).release();
    value->count = static_cast<long>(runs.size());
    for (std::size_t i = 0; i < runs.size(); ++i) {
        value->subtables[i].firstArg = runs[i].front().arguments[0];
        value->subtables[i].count = static_cast<long>(runs[i].size());
        value->subtables[i].rows = newRows<Row>(runs[i], table.arguments);
    }
    return value;
}

std::unique_ptr<IDbData> constant(const Table& table)
{
    auto value = std::make_unique<IDbDataConst>();
    value->value = table.points.front().components[0];
    return value;
}

std::unique_ptr<IDbData> constantVector(const Table& table)
{
    auto value = std::make_unique<IDbDataConstVector>();
    const auto& components = table.points.front().components;
    value->x = components[0];
    value->y = components[1];
    value->z = components[2];
    return value;
}

std::unique_ptr<IDbData> objectOf(const Table& table)
{
    const bool vector = table.components > 1;
    switch (table.arguments) {
    case 0:
        return vector ? constantVector(table) : constant(table);
    case 1:
        return vector ? oneDimensional<IDbDataTableVector, TABLEROWVECT>(table)
                      : oneDimensional<IDbDataTable, TABLEROW>(table);
    default:
        return vector ? twoDimensional<IDbDataTable2DVector, TABLEROWVECT>(table)
                      : twoDimensional<IDbDataTable2D, TABLEROW>(table);
    }
}

} // namespace

std::unique_ptr<IDbData> valueObject(const Table& table, PARAM_TYPE type)
{
    auto value = objectOf(table);
    // The analyzer loses the pointer where its type becomes that of the base.
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
    value->type = type;
    value->isVector = table.components > 1;
    return value;
}

} // namespace tool
