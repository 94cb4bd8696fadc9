#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// A text that is a whole number and nothing else.
std::optional<long> asWholeNumber(std::string_view text);

/// A text that is a finite decimal number and nothing else.
std::optional<double> asFiniteNumber(std::string_view text);

/// A number in the shortest form that reads back as the same number; "nan" whatever its sign is.
std::string numberText(double number);

/// A computed number rounded to 15 significant digits of `magnitude`, the largest number that went into it:
/// what is behind them comes from binary arithmetic.
double roundedTo(double number, double magnitude);

} // namespace tool
