#pragma once

#include "qmdatabase/records.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The text of a mixture's composition: components joined by ";", each the substance's ID, ":" and the
/// molar fraction.
namespace format {

enum class CompositionResult { Read, BadFormat, BadFraction };

/// Reads the components; none when the text holds neither ";" nor ":".
CompositionResult parseComposition(std::string_view text, std::vector<COMPONENT>& components);

/// A single component of fraction 1 is written "9:1", which parseComposition() refuses.
std::string compositionText(std::span<const COMPONENT> components);

/// The fractions' sum, added up in their order.
double sumOfFractions(std::span<const COMPONENT> components) noexcept;

/// Whether a mixture may have fractions of this sum. A sum that is not a number passes.
bool isSumAllowed(double sum) noexcept;

} // namespace format
