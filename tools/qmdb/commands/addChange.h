#pragma once

#include "commands/subcommand.h"

namespace tool {

void addChangeCommand(CLI::App& add, Action& action);

} // namespace tool
