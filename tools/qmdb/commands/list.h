#pragma once

#include "commands/subcommand.h"

namespace tool {

void addListCommand(CLI::App& app, Action& action);

} // namespace tool
