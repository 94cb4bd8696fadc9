#pragma once

#include "commands/owners.h"

#include <CLI/CLI.hpp>
#include <span>
#include <string>
#include <vector>

namespace tool {

/// Adds "--component SUBSTANCE:FRACTION", to be given once for each component of a mixture.
CLI::Option* addComponentOption(
    CLI::App& command, std::vector<std::string>& components, const std::string& help);

/// The components that a user names; none when there are no texts. Throws Failure for what is no mixture.
std::vector<COMPONENT> compositionOf(const Resolver& resolver, const std::vector<std::string>& texts);

/// Takes what the fractions exceed 1 by, rounding errors, from the last one.
void roundDown(std::span<COMPONENT> composition);

} // namespace tool
