#pragma once

#include "commands/subcommand.h"

/// Each adds one command, with those below it, or one of "add", to its parent; `action` is set when the
/// command is asked for.
namespace tool {

void addListCommand(CLI::App& app, Action& action);
void addGetCommand(CLI::App& app, Action& action);
void addFindCommand(CLI::App& app, Action& action);
void addPlotCommand(CLI::App& app, Action& action);
void addCheckCommand(CLI::App& app, Action& action);
void addExportCommand(CLI::App& app, Action& action);
void addNewCommand(CLI::App& app, Action& action);
void addSetCommand(CLI::App& app, Action& action);
void addDiffCommand(CLI::App& app, Action& action);
void addImportCommand(CLI::App& app, Action& action);
void addRemoveCommand(CLI::App& app, Action& action);

void addSubstanceCommand(CLI::App& add, Action& action);
void addPhaseCommand(CLI::App& add, Action& action);
void addChangeCommand(CLI::App& add, Action& action);
void addDescriptionCommand(CLI::App& add, Action& action);
void addParameterCommand(CLI::App& add, Action& action);

} // namespace tool
