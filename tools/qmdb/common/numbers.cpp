#include "common/numbers.h"

#include <charconv>
#include <cmath>
#include <fmt/format.h>

namespace tool {

namespace {

template <class Number>
std::optional<Number> asNumber(std::string_view text)
{
    Number number {};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole ? std::optional(number) : std::nullopt;
}

} // namespace

std::optional<long> asWholeNumber(std::string_view text)
{
    return asNumber<long>(text);
}

std::optional<double> asFiniteNumber(std::string_view text)
{
    const bool plus = text.starts_with('+') && !text.starts_with("+-");
    const auto number = asNumber<double>(text.substr(plus ? 1 : 0));
    return number && std::isfinite(*number) ? number : std::nullopt;
}

std::string numberText(double number)
{
    return std::isnan(number) ? "nan" : fmt::format("{}", number);
}

} // namespace tool
