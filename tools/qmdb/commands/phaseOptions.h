#pragma once

#include "database/Database.h"
#include "output/Output.h"

#include <CLI/CLI.hpp>

namespace tool {

/// Phases to add, by aggregate state.
struct PhaseOptions {
    std::vector<std::string> solid;
    std::vector<std::string> liquid;
    std::vector<std::string> gas;
};

/// Adds --solid, --liquid and --gas, of which a command takes one or more.
void addPhaseOptions(CLI::App& command, PhaseOptions& options);

/// The records of the phases. Throws Failure when a name cannot be taken.
std::vector<PHASE> phaseRecords(const PhaseOptions& options);

/// Adds the phases to a substance and tells of each.
void addPhases(Database& database, long substance, const std::vector<PHASE>& records, Output& output);

} // namespace tool
