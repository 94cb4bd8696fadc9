#pragma once

#include <span>
#include <string>
#include <string_view>

#include <CLI/CLI.hpp>

namespace tool {

/// A part of the manual that belongs to no single command. Empty lines stand between paragraphs.
struct ManualSection {
    std::string_view title;
    std::string_view text;
};

std::span<const ManualSection> manualSections();

/// "add parameter"; empty for the whole.
std::string commandName(const CLI::App& command);

/// What --help and the manual page tell of a command beside its first line; empty for one that is not in the
/// table.
std::string_view proseOf(std::string_view command);

} // namespace tool
