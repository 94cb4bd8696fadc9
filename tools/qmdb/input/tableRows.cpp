#include "input/tableRows.h"

#include "common/characters.h"
#include "common/failure.h"
#include "common/numbers.h"
#include "common/vocabulary.h"
#include "input/Problems.h"

#include <algorithm>
#include <set>

namespace tool {

namespace {

constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text, std::string_view what)
{
    const std::size_t first = text.find_first_not_of(what);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(what) + 1 - first);
}

std::vector<std::string> splitAtBlanks(std::string_view line)
{
    std::vector<std::string> fields;
    while (!(line = trimmed(line, blanks)).empty()) {
        const std::size_t end = std::min(line.find_first_of(blanks), line.size());
        fields.emplace_back(line.substr(0, end));
        line.remove_prefix(end);
    }
    return fields;
}

std::vector<std::string> splitAt(std::string_view line, char separator)
{
    std::vector<std::string> fields;
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = line.find(separator);
        fields.emplace_back(trimmed(trimmed(line.substr(0, end), blanks), "\""));
        line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    }
    return fields;
}

/// Semicolons separate where there are any, so that commas may be decimal points there.
std::vector<std::string> fieldsOf(std::string_view line)
{
    if (line.find(';') != std::string_view::npos) {
        std::string points(line);
        std::ranges::replace(points, ',', '.');
        return splitAt(points, ';');
    }
    return line.find(',') != std::string_view::npos ? splitAt(line, ',') : splitAtBlanks(line);
}

bool isNumber(const std::string& text)
{
    return asFiniteNumber(text).has_value();
}

void fillRow(InputRow& row, const std::vector<std::string>& fields, Problems& problems)
{
    for (const std::string& field : fields) {
        const auto number = asFiniteNumber(field);
        if (!number) {
            problems.add(
                row, std::to_string(row.numbers.size() + 1), fmt::format("{} is not a number", shown(field)));
        }
        row.numbers.push_back(number.value_or(0));
    }
}

void checkColumns(const std::vector<InputRow>& rows, Problems& problems)
{
    const std::size_t columns = rows.back().numbers.size();
    const std::size_t wanted = rows.front().numbers.size();
    if (columns != wanted) {
        problems.add(rows.back(),
            fmt::format("the number of columns is {}, in the first row it is {}", columns, wanted));
    }
}

/// A line without byte-order mark and outer blanks.
std::string_view contentOf(std::string_view line, bool first)
{
    const bool marked = first && line.starts_with(vocabulary::utf8Mark);
    line.remove_prefix(marked ? vocabulary::utf8Mark.size() : 0);
    return trimmed(line, blanks);
}

std::string commentOf(std::string_view line)
{
    line.remove_prefix(1);
    return std::string(line.substr(line.starts_with(' ') ? 1 : 0));
}

/// Every second byte of the numbers is zero then.
void refuseUtf16(std::string_view line, const std::string& name)
{
    const bool marked = line.starts_with("\xFF\xFE") || line.starts_with("\xFE\xFF");
    if (marked || line.find('\0') != std::string_view::npos) {
        throw Failure(
            "{} is encoded as UTF-16; save it as UTF-8, for example with \"iconv -f UTF-16\"", name);
    }
}

/// Checks that an argument increases from one row to the next.
void checkIncrease(const InputRow& before, const InputRow& row, std::size_t column, Problems& problems)
{
    const double last = before.numbers[column];
    const double number = row.numbers[column];
    if (!(last < number)) {
        problems.add(row, std::to_string(column + 1),
            fmt::format("the argument {} does not increase: the row before it has {}", number, last));
    }
}

/// Rows of one first argument stand together, and the second argument increases among them.
void checkArguments2D(const std::vector<InputRow>& rows, Problems& problems)
{
    std::set<double> seen { rows.front().numbers[0] };
    for (std::size_t i = 1; i < rows.size(); ++i) {
        if (rows[i - 1].numbers[0] == rows[i].numbers[0]) {
            checkIncrease(rows[i - 1], rows[i], 1, problems);
        } else if (!seen.insert(rows[i].numbers[0]).second) {
            problems.add(rows[i], "1",
                fmt::format("the first argument {} has rows further up: they must stand together",
                    rows[i].numbers[0]));
        }
    }
}

void checkArguments(const std::vector<InputRow>& rows, Problems& problems)
{
    for (std::size_t i = 1; i < rows.size(); ++i) {
        checkIncrease(rows[i - 1], rows[i], 0, problems);
    }
}

} // namespace

InputRows readRows(std::istream& input, const std::string& name)
{
    Problems problems(name, "nothing is added");
    InputRows read;
    std::vector<InputRow>& rows = read.rows;
    bool headPossible = true;
    std::size_t lineNumber = 0;
    for (std::string text; std::getline(input, text);) {
        refuseUtf16(text, name);
        const std::string_view line = contentOf(text, ++lineNumber == 1);
        if (line.empty()) {
            continue;
        }
        if (line.starts_with('#')) {
            read.comments.push_back(commentOf(line));
            continue;
        }
        const auto fields = fieldsOf(line);
        const bool head = std::exchange(headPossible, false) && std::ranges::none_of(fields, isNumber);
        if (!head) {
            rows.push_back({ { rows.size() + 1, lineNumber }, {} });
            fillRow(rows.back(), fields, problems);
            checkColumns(rows, problems);
        }
    }
    problems.throwIfAny();
    if (rows.empty()) {
        throw Failure("{} holds no row of numbers", name);
    }
    return read;
}

Table tableOf(const std::vector<InputRow>& rows, const std::string& name)
{
    const std::size_t columns = rows.front().numbers.size();
    if (columns < 2 || columns > 5) {
        throw Failure("{} has {}: a table has 2 (argument, value), 3 (two arguments, value), "
                      "4 (argument, vector) or 5 (two arguments, vector)",
            name, columns == 1 ? "1 column" : fmt::format("{} columns", columns));
    }
    Table table;
    table.components = columns < 4 ? 1 : 3;
    table.arguments = columns - table.components;
    Problems problems(name, "nothing is added");
    table.arguments == 1 ? checkArguments(rows, problems) : checkArguments2D(rows, problems);
    problems.throwIfAny();
    for (const InputRow& row : rows) {
        Point point;
        const auto components = row.numbers.begin() + static_cast<std::ptrdiff_t>(table.arguments);
        std::copy(row.numbers.begin(), components, point.arguments.begin());
        std::copy(components, row.numbers.end(), point.components.begin());
        table.points.push_back(point);
    }
    return table;
}

} // namespace tool
