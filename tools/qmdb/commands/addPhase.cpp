#include "commands/commands.h"

#include "commands/editing.h"
#include "commands/phaseOptions.h"

namespace tool {

namespace {

struct PhaseCommandOptions {
    Location location;
    std::string substance;
    PhaseOptions phases;
};

int runAddPhase(const PhaseCommandOptions& options)
{
    const std::vector<PHASE> phases = phaseRecords(options.phases);
    LockedDatabase at(options.location);
    const Substance substance = at.resolver.substance(options.substance);
    Output output;
    addPhases(at.database, substance.id, phases, output);
    output.finish();
    return ExitDone;
}

} // namespace

void addPhaseCommand(CLI::App& add, Action& action)
{
    const auto options = std::make_shared<PhaseCommandOptions>();
    CLI::App* command = addCommand(add, action, "phase", "Add phases to a substance", options, runAddPhase);
    command->add_option("SUBSTANCE", options->substance, "Substance, by name or number")
        ->required()
        ->check(notEmpty());
    addPhaseOptions(*command, options->phases);
    command->footer("Example:\n  qmdb add phase mine Water --solid Ice");
}

} // namespace tool
