#include "check/rules.h"
#include "common/characters.h"

#include "format/numbers.h"
#include "format/vocabulary.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fmt/format.h>

namespace tool::check {

namespace {

/// True when nothing stands behind the number and it fits, so that what is read is what stands there.
bool isWholeNumber(std::string_view text)
{
    if (const std::size_t comma = text.find(','); comma != std::string_view::npos) {
        std::string point(text);
        std::ranges::replace(point, ',', '.');
        return isWholeNumber(point);
    }
    const std::size_t sign = text.starts_with('+') ? 1 : 0;
    double number = 0;
    const auto [end, error] = std::from_chars(text.data() + sign, text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

std::string_view withoutOuterBlanks(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(format::columnSeparator);
    return first == std::string_view::npos
        ? std::string_view()
        : text.substr(first, text.find_last_not_of(format::columnSeparator) + 1 - first);
}

/// True for digits, one comma and three digits, as people group thousands: 1,234 but not 0,250.
bool looksGrouped(std::string_view text)
{
    text.remove_prefix(text.starts_with('+') || text.starts_with('-') ? 1 : 0);
    const std::size_t comma = text.find(',');
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    return comma >= 1 && comma <= 3 && text.size() == comma + 4 && !text.starts_with('0')
        && std::ranges::all_of(text.substr(0, comma), isDigit)
        && std::ranges::all_of(text.substr(comma + 1), isDigit);
}

} // namespace

std::optional<double> readNumber(
    Context& context, const Place& place, std::string_view text, std::string_view what)
{
    const auto number = format::wstr2double(text);
    if (!number) {
        context.findings.error("bad-number", place,
            fmt::format("{} is {}, which is no number", what, shown(text)), "write a number");
        return number;
    }
    const std::string_view bare = withoutOuterBlanks(text);
    const auto reading
        = [&] { return fmt::format("{} is {} and is read as {}", what, shown(text), *number); };
    if (!isWholeNumber(bare)) {
        context.findings.error("ignored-text", place, reading(), "write a decimal number and nothing else");
    } else if (!std::isfinite(*number)) {
        context.findings.warning(
            "not-finite", place, fmt::format("{} is read as {}", what, *number), "write a finite number");
    } else if (looksGrouped(bare)) {
        context.findings.warning("grouped-digits", place, reading(),
            "write the number without a comma, or with a point if a fraction is meant");
    }
    return number;
}

} // namespace tool::check
