#include "commands/add.h"

#include "commands/addChange.h"
#include "commands/addParameter.h"
#include "commands/addPhase.h"
#include "commands/addSubstance.h"

namespace tool {

void addAddCommand(CLI::App& app, Action& action)
{
    CLI::App* add = app.add_subcommand("add", "Add substances, phases, phase changes and parameters");
    add->require_subcommand(1);
    addSubstanceCommand(*add, action);
    addPhaseCommand(*add, action);
    addChangeCommand(*add, action);
    addParameterCommand(*add, action);
}

} // namespace tool
