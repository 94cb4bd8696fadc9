#pragma once

#include "commands/subcommand.h"

namespace tool {

void addPlotCommand(CLI::App& app, Action& action);

} // namespace tool
