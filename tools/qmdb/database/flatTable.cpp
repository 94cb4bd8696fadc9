#include "database/flatTable.h"

#include "common/vocabulary.h"

#include <fmt/format.h>
#include <span>

namespace tool {

namespace {

/// The library's rows, also when there are none.
template <class Row>
std::span<const Row> spanOf(const Row* rows, long count)
{
    return rows && count > 0 ? std::span(rows, static_cast<std::size_t>(count)) : std::span<const Row>();
}

std::array<double, 3> componentsOf(const TABLEROW& row)
{
    return { row.y };
}

std::array<double, 3> componentsOf(const TABLEROWVECT& row)
{
    return { row.vx, row.vy, row.vz };
}

template <class Value>
void appendTable(Table& table, const Value& value)
{
    table.arguments = 1;
    table.points.reserve(spanOf(value.rows, value.count).size());
    for (const auto& row : spanOf(value.rows, value.count)) {
        table.points.push_back({ { row.x }, componentsOf(row) });
    }
}

template <class Value>
void appendTable2D(Table& table, const Value& value)
{
    table.arguments = 2;
    for (const auto& subtable : spanOf(value.subtables, value.count)) {
        if (subtable.count > 0) {
            table.subtables.push_back(table.points.size());
        }
        for (const auto& row : spanOf(subtable.rows, subtable.count)) {
            table.points.push_back({ { subtable.firstArg, row.x }, componentsOf(row) });
        }
    }
}

void appendScalar(Table& table, const IDbData& value)
{
    switch (value.type) {
    case PARAM_TYPE_CONSTANT:
        table.points.push_back({ {}, { static_cast<const IDbDataConst&>(value).value } });
        break;
    case PARAM_TYPE_TABLE_T:
    case PARAM_TYPE_TABLE_P:
        appendTable(table, static_cast<const IDbDataTable&>(value));
        break;
    case PARAM_TYPE_TABLE2D_T:
    case PARAM_TYPE_TABLE2D_X:
        appendTable2D(table, static_cast<const IDbDataTable2D&>(value));
        break;
    }
}

void appendVector(Table& table, const IDbData& value)
{
    switch (value.type) {
    case PARAM_TYPE_CONSTANT: {
        const auto& vector = static_cast<const IDbDataConstVector&>(value);
        table.points.push_back({ {}, { vector.x, vector.y, vector.z } });
        break;
    }
    case PARAM_TYPE_TABLE_T:
    case PARAM_TYPE_TABLE_P:
        appendTable(table, static_cast<const IDbDataTableVector&>(value));
        break;
    case PARAM_TYPE_TABLE2D_T:
    case PARAM_TYPE_TABLE2D_X:
        appendTable2D(table, static_cast<const IDbDataTable2DVector&>(value));
        break;
    }
}

} // namespace

Table flatten(const IDbData& value)
{
    Table table;
    table.components = value.isVector ? 3 : 1;
    value.isVector ? appendVector(table, value) : appendScalar(table, value);
    return table;
}

std::vector<double> numbersOf(const Table& table, const Point& point)
{
    std::vector<double> numbers(point.arguments.begin(), point.arguments.begin() + table.arguments);
    numbers.insert(numbers.end(), point.components.begin(), point.components.begin() + table.components);
    return numbers;
}

std::vector<std::string_view> argumentNames(PARAM_TYPE type)
{
    switch (type) {
    case PARAM_TYPE_TABLE_T:
        return { "T" };
    case PARAM_TYPE_TABLE_P:
        return { "p" };
    case PARAM_TYPE_TABLE2D_T:
        return { "P", "T" };
    case PARAM_TYPE_TABLE2D_X:
        return { "P", "X" };
    case PARAM_TYPE_CONSTANT:
        break;
    }
    return {};
}

std::string_view typeLetter(PARAM_TYPE type)
{
    const std::size_t index = static_cast<std::size_t>(type) - 1; // no type is before all
    return index < vocabulary::typeLetters.size() ? vocabulary::typeLetters.substr(index, 1) : "?";
}

std::string typeText(PARAM_TYPE type)
{
    if (type == PARAM_TYPE_CONSTANT) {
        return "constant";
    }
    const auto names = argumentNames(type);
    return names.empty() ? fmt::format("unknown type {}", static_cast<int>(type))
                         : fmt::format("table of {}", fmt::join(names, ", "));
}

std::string_view componentName(std::size_t components, std::size_t index)
{
    return components == 1 ? std::string_view() : std::string_view("xyz").substr(index, 1);
}

} // namespace tool
