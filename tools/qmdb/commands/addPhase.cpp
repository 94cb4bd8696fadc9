#include "commands/commands.h"

#include "commands/owners.h"
#include "commands/phaseOptions.h"
#include "database/DatabaseLock.h"

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
    const DatabaseLock lock(options.location.directory);
    Database database(options.location);
    const Annotations annotations(options.location.directory);
    const Substance substance = Resolver(database, annotations).substance(options.substance);
    Output output;
    addPhases(database, substance.id, phases, output);
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
}

} // namespace tool
