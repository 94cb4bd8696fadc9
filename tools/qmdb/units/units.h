#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// Turns numbers in one unit into numbers in another: factor * number + offset.
struct Conversion {
    double factor = 1;
    double offset = 0;

    /// Rounded to 15 significant digits, which hides what binary arithmetic adds: 300 K are 26.85 °C.
    double operator()(double number) const;
    Conversion inverse() const;
};

/// The conversion between units as databases and people write them: "W/(m·K)", "Вт/(м·К)", "g/cm3", "degC".
/// Throws WrongUnits when one of them is none, or they do not measure the same.
Conversion conversion(std::string_view from, std::string_view to);

/// The same; nothing instead of throwing.
std::optional<Conversion> findConversion(std::string_view from, std::string_view to);

/// Throws WrongUnits unless it is a unit.
void requireUnit(std::string_view units);

} // namespace tool
