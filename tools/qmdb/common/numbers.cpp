#include "common/numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
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

constexpr int reliableDigits = 15; ///< decimal digits that every double keeps

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

double roundedTo(double number, double magnitude)
{
    if (number == 0 || !std::isfinite(number) || !std::isfinite(magnitude)) {
        return number;
    }
    const auto exponent = [](double of) { return static_cast<int>(std::floor(std::log10(std::abs(of)))); };
    const int digits = reliableDigits - 1 - std::max(0, exponent(magnitude) - exponent(number));
    return digits < 0 ? 0 : std::strtod(fmt::format("{:.{}e}", number, digits).c_str(), nullptr);
}

} // namespace tool
