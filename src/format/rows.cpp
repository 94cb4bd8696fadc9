#include "format/rows.h"

#include "format/numbers.h"
#include "format/vocabulary.h"

#include <algorithm>
#include <cmath>

namespace format {

bool isSkipped(std::string_view line) noexcept
{
    return line.empty() || line.starts_with(commentSign);
}

std::optional<std::string_view> firstArgumentOf(std::string_view line) noexcept
{
    return line.starts_with(subtableSign) ? std::optional(line.substr(subtableSign.size())) : std::nullopt;
}

std::vector<std::string> splitString(std::string_view text)
{
    if (text.empty()) {
        return {};
    }
    const std::size_t last = text.size() - 1;
    // The leading run is skipped, but never its last character when nothing follows it.
    std::size_t start = last == 0 ? 0 : std::min(text.find_first_not_of(columnSeparator), last);
    std::size_t found = text.find(columnSeparator, start);
    if (found == std::string_view::npos) {
        return {}; // one number alone is no row: the rule of the format, odd as it is
    }
    std::vector<std::string> tokens;
    while (start <= last) {
        tokens.emplace_back(text.substr(start, found - start));
        const std::size_t next
            = found == std::string_view::npos ? found : text.find_first_not_of(columnSeparator, found);
        if (next == std::string_view::npos) {
            break;
        }
        start = next;
        found = text.find(columnSeparator, start);
    }
    return tokens;
}

RowResult parseRow(std::string_view line, std::span<double> numbers)
{
    const std::vector<std::string> columns = splitString(line);
    if (columns.size() != numbers.size()) {
        return { RowFault::Columns };
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::optional<double> number = wstr2double(columns[i]);
        if (!number) {
            return { RowFault::Number, i };
        }
        numbers[i] = *number;
    }
    return {};
}

bool parsePlainRow(std::string_view bytes, std::span<double> numbers) noexcept
{
    const char* at = bytes.data();
    const char* const end = at + bytes.size();
    bool isFirst = true;
    for (double& number : numbers) {
        if (!isFirst && (at == end || *at != columnSeparator)) {
            return false;
        }
        while (!isFirst && at != end && *at == columnSeparator) {
            ++at;
        }
        isFirst = false;
        at = parsePlainNumber(at, end, number);
        if (!at) {
            return false;
        }
    }
    return at == end || (*at == '\r' && at + 1 == end);
}

bool mayFollow(std::optional<double> before, double argument) noexcept
{
    return !std::isnan(argument) && (!before || *before < argument);
}

void appendRow(std::string& bytes, std::span<const double> numbers, std::string_view sign)
{
    bytes += sign;
    bool isFirst = true;
    for (const double number : numbers) {
        if (!isFirst) {
            bytes += columnSeparator;
        }
        isFirst = false;
        bytes += double2wstr(number);
    }
    bytes += '\n';
}

} // namespace format
