#include "commands/commands.h"

#include "commands/owners.h"
#include "common/names.h"
#include "database/DatabaseLock.h"
#include "input/recordTexts.h"
#include "output/Output.h"

namespace tool {

namespace {

struct ChangeOptions {
    Location location;
    std::string substance;
    std::string name;
    std::string from;
    std::string to;
};

int runAddChange(const ChangeOptions& options)
{
    const DatabaseLock lock(options.location.directory);
    Database database(options.location);
    const Annotations annotations(options.location.directory);
    const Resolver resolver(database, annotations);
    const Substance substance = resolver.substance(options.substance);
    const Owner from = resolver.phase(substance, options.from);
    const Owner to = resolver.phase(substance, options.to);
    if (from.id == to.id) {
        throw Failure("a phase change leads from one phase to another");
    }
    PHASECHANGE record { 0, {}, from.id, to.id };
    setName(record.name, options.name, "the name");
    const long id = database.addChange(substance.id, record);
    Output output;
    output.print("added phase change {}, {} to {}\n", label(options.name, id), from.name, to.name);
    output.finish();
    return ExitDone;
}

} // namespace

void addChangeCommand(CLI::App& add, Action& action)
{
    const auto options = std::make_shared<ChangeOptions>();
    CLI::App* command
        = addCommand(add, action, "change", "Add a phase change to a substance", options, runAddChange);
    command->add_option("SUBSTANCE", options->substance, "Substance, by name or number")
        ->required()
        ->check(notEmpty());
    command->add_option("NAME", options->name, "Name of the new phase change")->required();
    command->add_option("--from", options->from, "Phase before the change")
        ->required()
        ->type_name("PHASE")
        ->check(notEmpty());
    command->add_option("--to", options->to, "Phase after the change")
        ->required()
        ->type_name("PHASE")
        ->check(notEmpty());
}

} // namespace tool
