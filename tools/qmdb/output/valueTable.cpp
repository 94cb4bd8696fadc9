#include "output/valueTable.h"

#include "common/characters.h"
#include "common/failure.h"
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

std::vector<std::string> headOf(const ShownValue& value)
{
    std::vector<std::string> head;
    for (const ArgumentNotes& argument : value.notes.arguments) {
        head.push_back(printable(argument.label()));
    }
    for (std::size_t i = 0; i < value.table.components; ++i) {
        head.push_back(columnName(value.parameter, value.table.components, i));
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

void printConstant(Output& output, const ShownValue& value)
{
    const std::string& units = value.parameter.units;
    output.print("{}{}{}\n", fmt::join(cellsOf(value.table, value.table.points.front()), " "),
        units.empty() ? "" : " ", units);
}

void printAligned(Output& output, const ShownValue& value)
{
    output.print("{}{}", value.title, value.table.arguments == 0 ? ": " : "\n");
    if (value.table.arguments == 0) {
        printConstant(output, value);
        return;
    }
    std::vector<std::vector<std::string>> rows { headOf(value) };
    for (const Point& point : value.table.points) {
        rows.push_back(cellsOf(value.table, point));
    }
    std::vector<std::size_t> widths(rows.front().size());
    for (const auto& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], displayWidth(row[i]));
        }
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        printRow(output, rows[i], widths, i == 0 ? fmt::text_style(fmt::emphasis::bold) : fmt::text_style());
    }
}

void printCsv(Output& output, std::span<const ShownValue> values)
{
    const bool several = values.size() > 1;
    std::vector<std::string> head = headOf(values.front());
    for (const ShownValue& value : values) {
        if (headOf(value) != head) {
            throw Failure("{} and {} have different columns: ask for one at a time, or for --json",
                values.front().title, value.title);
        }
    }
    std::ranges::transform(head, head.begin(), csvField);
    output.print("{}{}\n", several ? "material," : "", fmt::join(head, ","));
    for (const ShownValue& value : values) {
        const std::string begin = several ? csvField(value.title) + "," : "";
        for (const Point& point : value.table.points) {
            output.print("{}{}\n", begin, fmt::join(cellsOf(value.table, point), ","));
        }
    }
}

} // namespace tool
