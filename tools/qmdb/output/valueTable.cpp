#include "output/valueTable.h"

#include "common/characters.h"
#include "common/numbers.h"
#include "output/columns.h"

#include <algorithm>

namespace tool {

namespace {

/// The name of a value or of one of its components, with units: "Density, kg/m3".
std::string columnName(const Parameter& parameter, std::size_t components, std::size_t index)
{
    const std::string_view component = componentName(components, index);
    return fmt::format("{}{}{}{}{}", parameter.name, component.empty() ? "" : " ", component,
        parameter.units.empty() ? "" : ", ", parameter.units);
}

std::vector<std::string> headOf(const Parameter& parameter, const ParameterNotes& notes, const Table& table)
{
    std::vector<std::string> head;
    for (const ArgumentNotes& argument : notes.arguments) {
        head.push_back(printable(argument.label()));
    }
    for (std::size_t i = 0; i < table.components; ++i) {
        head.push_back(columnName(parameter, table.components, i));
    }
    return head;
}

std::vector<std::string> cellsOf(const Table& table, const Point& point)
{
    std::vector<std::string> cells;
    for (const double number : numbersOf(table, point)) {
        cells.push_back(numberText(number));
    }
    return cells;
}

void printRow(Output& output, const std::vector<std::string>& cells, const std::vector<std::size_t>& widths,
    const fmt::text_style& style)
{
    for (std::size_t i = 0; i < cells.size(); ++i) {
        output.print("{}{}", i == 0 ? "" : "  ", output.styled(style, padLeft(cells[i], widths[i])));
    }
    output.write("\n");
}

void printConstant(Output& output, const Parameter& parameter, const Table& table)
{
    const std::string number = fmt::format("{}", fmt::join(cellsOf(table, table.points.front()), " "));
    output.print("{}{}{}\n", number, parameter.units.empty() ? "" : " ", parameter.units);
}

} // namespace

std::string csvField(std::string_view text)
{
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        return std::string(text);
    }
    std::string field = "\"";
    for (const char character : text) {
        field += character == '"' ? "\"\"" : std::string(1, character);
    }
    return field + "\"";
}

void printAligned(Output& output, std::string_view owner, const Parameter& parameter,
    const ParameterNotes& notes, const Table& table)
{
    if (table.arguments == 0) {
        printConstant(output, parameter, table);
        return;
    }
    std::vector<std::vector<std::string>> rows { headOf(parameter, notes, table) };
    for (const Point& point : table.points) {
        rows.push_back(cellsOf(table, point));
    }
    std::vector<std::size_t> widths(rows.front().size());
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], displayWidth(row[i]));
        }
    }
    output.print("{}\n", owner);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        printRow(output, rows[i], widths, i == 0 ? fmt::text_style(fmt::emphasis::bold) : fmt::text_style());
    }
}

void printCsv(Output& output, const Parameter& parameter, const ParameterNotes& notes, const Table& table)
{
    std::vector<std::string> head = headOf(parameter, notes, table);
    std::ranges::transform(head, head.begin(), csvField);
    output.print("{}\n", fmt::join(head, ","));
    for (const Point& point : table.points) {
        output.print("{}\n", fmt::join(cellsOf(table, point), ","));
    }
}

} // namespace tool
