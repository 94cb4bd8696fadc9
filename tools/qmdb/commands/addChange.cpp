#include "commands/commands.h"

#include "commands/editing.h"
#include "common/leftovers.h"
#include "common/names.h"
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
    TextOptions texts;
};

int runAddChange(const ChangeOptions& options)
{
    const writing::DescriptorChange rest { options.texts.changes(options.location.language), {} };
    LockedDatabase at(options.location);
    const Substance substance = at.resolver.substance(options.substance);
    const Owner from = at.resolver.phase(substance, options.from);
    const Owner to = at.resolver.phase(substance, options.to);
    if (from.id == to.id) {
        throw Failure("a phase change leads from one phase to another");
    }
    PHASECHANGE record { 0, {}, from.id, to.id };
    setName(record.name, options.name, "the name");
    requireAddition(options.location, substance.id, Owner::Kind::Change, rest);
    const PutOffSignals putOff; // all of it, or nothing
    Output output;
    Owner added { Owner::Kind::Change, -1, options.name, MATTER_STATE_NOT_GIVEN, from.id, to.id };
    added.id = at.database.addChange(substance.id, record);
    output.print("added phase change {}, {} to {}\n", label(options.name, added.id), from.name, to.name);
    completeAddition(options.location, substance.id, added, rest, label(options.name, added.id));
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
    options->texts.addRussian(*command, writing::TextKey::Name, "--name-ru", "Name");
    command->add_option("--from", options->from, "Phase before the change")
        ->required()
        ->type_name("PHASE")
        ->check(notEmpty());
    command->add_option("--to", options->to, "Phase after the change")
        ->required()
        ->type_name("PHASE")
        ->check(notEmpty());
    command->footer("Example:\n  qmdb add change mine Water Melting --from Ice --to Liquid");
}

} // namespace tool
