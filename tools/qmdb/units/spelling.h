#pragma once

#include <string>
#include <string_view>

namespace tool {

/// Units as UDUNITS spells them: Russian symbols in Latin letters, exponents with "^", one kind of dot.
std::string spelledForUdunits(std::string_view units);

/// Units in the symbols of the Russian language: "Вт/(м·К)" for "W/(m·K)". What is unknown stays as it is.
std::string spelledInRussian(std::string_view units);

} // namespace tool
