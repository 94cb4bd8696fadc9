#pragma once

#include "commands/subcommand.h"

namespace tool {

void addExportCommand(CLI::App& app, Action& action);

} // namespace tool
