#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace tool {

/// The manual page of all commands, in the language of man(7).
///
/// Throws Failure when a command has no prose or no example.
std::string manualPage(const CLI::App& app);

} // namespace tool
