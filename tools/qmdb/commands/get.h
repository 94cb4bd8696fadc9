#pragma once

#include "commands/subcommand.h"

namespace tool {

void addGetCommand(CLI::App& app, Action& action);

} // namespace tool
