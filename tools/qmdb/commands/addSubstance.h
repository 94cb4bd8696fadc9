#pragma once

#include "commands/subcommand.h"

namespace tool {

void addSubstanceCommand(CLI::App& add, Action& action);

} // namespace tool
