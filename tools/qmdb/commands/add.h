#pragma once

#include "commands/subcommand.h"

namespace tool {

void addAddCommand(CLI::App& app, Action& action);

} // namespace tool
