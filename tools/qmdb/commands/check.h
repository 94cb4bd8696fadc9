#pragma once

#include "commands/subcommand.h"

namespace tool {

void addCheckCommand(CLI::App& app, Action& action);

} // namespace tool
