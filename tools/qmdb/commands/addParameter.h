#pragma once

#include "commands/subcommand.h"

namespace tool {

void addParameterCommand(CLI::App& add, Action& action);

} // namespace tool
