#pragma once

#include <string>
#include <string_view>

namespace tool {

/// Units as UDUNITS spells them: Russian symbols in Latin letters, exponents with "^", one kind of dot.
std::string spelledForUdunits(std::string_view units);

} // namespace tool
