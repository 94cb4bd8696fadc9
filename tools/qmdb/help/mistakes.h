#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace tool {

/// Throws Failure when a command is missing or a word stands where one should; the parser would not name it.
void requireCommands(const CLI::App& app, const std::vector<std::string>& words);

/// What is wrong with a command line that the parser refuses, and what to write.
std::string mistakeText(const CLI::App& app, const CLI::ParseError& error);

} // namespace tool
