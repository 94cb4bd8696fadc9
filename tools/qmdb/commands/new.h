#pragma once

#include "commands/subcommand.h"

namespace tool {

void addNewCommand(CLI::App& app, Action& action);

} // namespace tool
