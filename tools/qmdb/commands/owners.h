#pragma once

#include "database/Database.h"

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace tool {

/// The options that name what a parameter is attached to, as the user gives them.
struct OwnerOptions {
    std::vector<std::string> phases;
    std::vector<std::string> changes;
};

/// Adds --phase and --change, of which a command takes one kind.
void addOwnerOptions(CLI::App& command, OwnerOptions& options);

/// The same for a command that takes one phase or phase change.
void addOwnerOptions(CLI::App& command, std::string& phase, std::string& change);

/// The owners that the options name; the substance itself when they name none.
std::vector<Owner> chooseOwners(
    const Database& database, const Substance& substance, const OwnerOptions& options);

/// A parameter by name or number; the message of a miss tells where else the substance has it.
Parameter chooseParameter(
    const Database& database, const Substance& substance, const Owner& owner, std::string_view wanted);

/// "Water", "Water, phase Ice" and the like.
std::string ownerText(const Substance& substance, const Owner& owner);

} // namespace tool
