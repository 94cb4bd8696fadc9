#pragma once

#include "output/picture.h"

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

namespace tool {

/// How a picture is to look, as the user says it.
struct LookOptions {
    std::string logarithmic; ///< "x", "y" or "xy"
    bool linear = false;
    std::vector<std::string> ranges;
    std::string size;
    std::string title;
};

/// Adds --linear, --range, --size and --title.
void addLookOptions(CLI::App& command, LookOptions& options);

/// Lets --log, which all commands have for a directory, take names of axes, too.
void addLogOption(CLI::App& command, std::string& logarithmic, std::string& logDirectory);

/// Gives the picture its title, its size and its axes. Throws Failure for what cannot be.
void applyLook(Picture& picture, const LookOptions& options);

} // namespace tool
