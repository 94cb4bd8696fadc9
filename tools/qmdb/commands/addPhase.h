#pragma once

#include "commands/subcommand.h"

namespace tool {

void addPhaseCommand(CLI::App& add, Action& action);

} // namespace tool
