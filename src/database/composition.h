#pragma once

#include "qmdatabase/records.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The text of a mixture's composition: components joined by ";", each the substance's ID, ":" and the
/// molar fraction.
namespace composition {

/// How reading a composition went.
enum class Outcome { Read, BadFormat, BadFraction };

/// Reads the components; none when the text holds neither ";" nor ":".
Outcome parse(std::string_view text, std::vector<COMPONENT>& components);

std::string format(std::span<const COMPONENT> components);

/// The fractions' sum, added up in their order.
double sumOfFractions(std::span<const COMPONENT> components) noexcept;

/// The components of a caller's record; none when it counts some and has none.
std::span<const COMPONENT> componentsOf(const MATTER& matter) noexcept;

} // namespace composition
