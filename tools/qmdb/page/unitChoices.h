#pragma once

#include "units/units.h"

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

/// A text in each language of the page: English and Russian.
using PageText = std::array<std::string_view, 2>;

/// A unit that a reader may choose.
struct OfferedUnit {
    std::string_view units; ///< as UDUNITS takes them
    PageText label;
};

/// What is measured in the same units: pressures, and stresses with them.
struct Quantity {
    PageText name;
    std::span<const OfferedUnit> choices;
};

std::span<const Quantity> quantities();

/// What units of a database can be shown as: a conversion to each choice of a quantity.
struct ChosenUnits {
    std::size_t quantity = 0; ///< an index of quantities()
    std::vector<Conversion> conversions;
};

/// Nothing for units that no quantity of the page has, or that UDUNITS does not know.
std::optional<ChosenUnits> chosenUnits(const std::string& units);

} // namespace tool
