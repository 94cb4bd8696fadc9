// Data files of all six kinds are read as their rules say, and rows that are written read back.

#include "format/rows.h"
#include "format/innerText.h"
#include "fuzz.h"
#include "qmdatabase/status.h"
#include "reference.h"
#include "values/formats.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace {

using fuzz::require;

/// What a load gives: a code, and all numbers in their order, with the counts of subtables.
struct Outcome {
    int code = QMDB_OK;
    std::vector<double> numbers = {};
};

bool isSame(const Outcome& a, const Outcome& b)
{
    return a.code == b.code
        && (a.code != QMDB_OK || std::ranges::equal(a.numbers, b.numbers, reference::same));
}

struct DataLine {
    std::wstring text;
    bool isTooLong;
    bool isLast;
};

std::vector<DataLine> dataLines(const std::string& file)
{
    std::vector<DataLine> lines;
    for (const reference::Line& line : reference::cut(file)) {
        const std::wstring text = reference::decode(line.bytes, false);
        if (line.isTooLong || (!text.empty() && text.front() != L'#')) {
            lines.push_back({ text, line.isTooLong, line.isLast });
        }
    }
    return lines;
}

int readRow(const std::wstring& line, std::size_t columns, std::vector<double>& numbers)
{
    const std::vector<std::wstring> tokens = reference::split(line);
    if (tokens.size() != columns) {
        return QMDB_E_FORMAT;
    }
    for (const std::wstring& token : tokens) {
        const std::optional<reference::Number> number = reference::number(token);
        if (!number) {
            return QMDB_E_NUMBER;
        }
        numbers.push_back(number->value);
    }
    return QMDB_OK;
}

/// Rows of one table or subtable. Of scalars each is checked when it is met, of vectors all at the end.
class Table {
public:
    explicit Table(std::size_t columns)
        : columns_(columns)
    {
    }

    int add(const std::wstring& line)
    {
        lines_.push_back(line);
        return columns_ == 2 ? check(line) : QMDB_OK;
    }
    int finish()
    {
        for (std::size_t i = 0; columns_ > 2 && i < lines_.size(); ++i) {
            if (const int code = check(lines_[i]); code != QMDB_OK) {
                return code;
            }
        }
        return QMDB_OK;
    }
    std::size_t count() const { return lines_.size(); }
    const std::vector<double>& numbers() const { return numbers_; }

private:
    int check(const std::wstring& line)
    {
        const std::size_t before = numbers_.size();
        if (const int code = readRow(line, columns_, numbers_); code != QMDB_OK) {
            return code;
        }
        const double x = numbers_[before];
        const bool follows = !std::isnan(x) && (before == 0 || numbers_[before - columns_] < x);
        return follows ? QMDB_OK : QMDB_E_NUMBER;
    }

    std::size_t columns_;
    std::vector<std::wstring> lines_;
    std::vector<double> numbers_;
};

Outcome readConstant(const std::vector<DataLine>& lines, std::size_t columns)
{
    if (!lines.empty() && lines.back().isTooLong) {
        return { QMDB_E_READ };
    }
    const std::wstring line = lines.empty() ? std::wstring() : lines.back().text;
    Outcome outcome;
    if (columns == 3) {
        outcome.code = readRow(line, columns, outcome.numbers);
    } else if (const std::optional<reference::Number> number = reference::number(line)) {
        outcome.numbers = { number->value };
    } else {
        outcome.code = QMDB_E_NUMBER;
    }
    return outcome;
}

Outcome readTable(const std::vector<DataLine>& lines, std::size_t columns)
{
    Table table(columns);
    for (const DataLine& line : lines) {
        if (const int code = line.isTooLong ? QMDB_E_READ : table.add(line.text); code != QMDB_OK) {
            return { code };
        }
    }
    if (table.count() == 0) {
        return { QMDB_E_EMPTY };
    }
    return { table.finish(), table.numbers() };
}

int appendSubtable(Table& table, double firstArgument, std::vector<double>& numbers)
{
    if (const int code = table.finish(); code != QMDB_OK || table.count() == 0) {
        return code;
    }
    numbers.insert(numbers.end(), { firstArgument, static_cast<double>(table.count()) });
    numbers.insert(numbers.end(), table.numbers().begin(), table.numbers().end());
    return QMDB_OK;
}

Outcome readTable2D(const std::vector<DataLine>& lines, std::size_t columns)
{
    Outcome outcome;
    std::optional<double> firstArgument;
    Table table(columns);
    for (const DataLine& line : lines) {
        if (line.isTooLong) {
            return { QMDB_E_READ };
        }
        const bool isHeader = line.text.starts_with(L"P=");
        if (line.isLast && !isHeader) {
            break; // a last row without a line end does not count
        }
        if (!isHeader) {
            const int code = firstArgument ? table.add(line.text) : QMDB_E_FORMAT;
            if (code != QMDB_OK) {
                return { code };
            }
            continue;
        }
        if (firstArgument) {
            outcome.code = appendSubtable(table, *firstArgument, outcome.numbers);
        }
        table = Table(columns);
        if (outcome.code != QMDB_OK || line.isLast) {
            break;
        }
        const std::optional<reference::Number> number = reference::number(line.text.substr(2));
        if (!number) {
            return { QMDB_E_NUMBER };
        }
        firstArgument = number->value;
    }
    if (firstArgument && outcome.code == QMDB_OK) {
        outcome.code = appendSubtable(table, *firstArgument, outcome.numbers);
    }
    outcome.code = outcome.code == QMDB_OK && outcome.numbers.empty() ? int { QMDB_E_EMPTY } : outcome.code;
    return outcome;
}

void append(std::vector<double>& numbers, const TABLEROW& row)
{
    numbers.insert(numbers.end(), { row.x, row.y });
}

void append(std::vector<double>& numbers, const TABLEROWVECT& row)
{
    numbers.insert(numbers.end(), { row.x, row.vx, row.vy, row.vz });
}

template <class Value>
void appendAll(std::vector<double>& numbers, const Value& value)
{
    if constexpr (requires { value.value; }) {
        numbers = { value.value };
    } else if constexpr (requires { value.z; }) {
        numbers = { value.x, value.y, value.z };
    } else if constexpr (requires { value.subtables; }) {
        for (long i = 0; i < value.count; ++i) {
            const auto& subtable = value.subtables[i];
            numbers.insert(numbers.end(), { subtable.firstArg, static_cast<double>(subtable.count) });
            appendAll(numbers, subtable);
        }
    } else {
        std::for_each(value.rows, value.rows + value.count, [&](const auto& row) { append(numbers, row); });
    }
}

template <class Value>
Outcome load(const std::string& path)
{
    static const CLog log("/dev/null", false); // no directory: nothing is written
    static const CDbFile head(log);
    Value value;
    Outcome outcome { values::load(head, path, value) };
    if (outcome.code == QMDB_OK) {
        appendAll(outcome.numbers, value);
    }
    return outcome;
}

struct Kind {
    Outcome (*load)(const std::string& path);
    Outcome (*read)(const std::vector<DataLine>& lines, std::size_t columns);
    std::size_t columns;
};

constexpr std::array kinds = {
    Kind { load<IDbDataConst>, readConstant, 1 },
    Kind { load<IDbDataConstVector>, readConstant, 3 },
    Kind { load<IDbDataTable>, readTable, 2 },
    Kind { load<IDbDataTableVector>, readTable, 4 },
    Kind { load<IDbDataTable2D>, readTable2D, 2 },
    Kind { load<IDbDataTable2DVector>, readTable2D, 4 },
};

void split(const std::wstring& line)
{
    const std::vector<std::wstring> expected = reference::split(line);
    const std::vector<std::string> tokens = format::splitString(format::text::fromWide(line));
    require(std::ranges::equal(tokens, expected, {}, format::text::toWide), "a row is cut at its blanks");
}

void writeAndRead(std::span<const double> row)
{
    std::vector<double> expected;
    for (const double number : row) {
        const std::string text = reference::written(number);
        expected.push_back(reference::number({ text.begin(), text.end() })->value);
    }
    std::string bytes;
    format::appendRow(bytes, row);
    bytes.pop_back(); // the LF
    std::vector<double> back(row.size());
    require(format::parseRow(bytes, back).fault == format::RowFault::None, "a row written can be read");
    require(std::ranges::equal(back, expected, reference::same), "a row written reads back");
    if (format::parsePlainRow(bytes, back)) {
        require(
            std::ranges::equal(back, expected, reference::same), "a row written reads back as a plain one");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const std::size_t choice = input.byte();
    const Kind& kind = kinds[choice / 2 % kinds.size()];
    fuzz::setLocale(choice % 2 != 0);
    const std::string bytes = fuzz::inflate(input.rest(), fuzz::mostOfFile);
    const std::vector<DataLine> lines = dataLines(bytes);
    std::ranges::for_each(lines, split, &DataLine::text);
    const Outcome expected = kind.read(lines, kind.columns);
    require(
        isSame(kind.load(fuzz::MemoryFile(bytes).path()), expected), "a data file is read as the rules say");
    if (expected.code == QMDB_OK && kind.columns > 1) {
        writeAndRead(std::span(expected.numbers).first(kind.columns));
    }
    return 0;
}
