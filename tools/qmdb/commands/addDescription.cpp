#include "commands/commands.h"

#include "commands/descriptionOptions.h"
#include "commands/editing.h"
#include "common/names.h"
#include "database/DatabaseLock.h"
#include "input/recordTexts.h"

#include <array>

namespace tool {

namespace {

struct NewDescriptionOptions {
    Location location;
    EditOptions edit;
    writing::NewDescription description;
    long id = -1;
    bool noScalar = false;
    DescriptionKeys keys;
};

/// Throws Failure for texts that records cannot hold.
void checkTexts(const writing::NewDescription& description)
{
    std::array<wchar_t, std::extent_v<decltype(PARAMETER::name)>> name {};
    std::array<wchar_t, std::extent_v<decltype(PARAMETER::units)>> units {};
    setName(name, description.name, "the name");
    setText(name, description.russianName, "--name-ru");
    setText(units, description.units, "--units");
    setText(units, description.russianUnits, "--units-ru");
}

int runAddDescription(const NewDescriptionOptions& options)
{
    writing::NewDescription description = options.description;
    checkTexts(description);
    description.types = checkedLetters("DataTypes", options.description.types);
    description.states = checkedLetters("AvForPhases", options.description.states);
    description.scalar = !(options.description.vector && options.noScalar);
    description.keys = options.keys.changes();
    if (options.id >= 0) {
        description.id = options.id;
    }
    const DatabaseLock lock(options.location.directory);
    requireOpening(options.location);
    writing::Edit edit(options.location.directory, options.location.language);
    const long id = writing::addDescription(edit, description);
    return finishEdit(
        edit, options.edit, fmt::format("added the description of {}", label(description.name, id)));
}

} // namespace

void addDescriptionCommand(CLI::App& add, Action& action)
{
    const auto options = std::make_shared<NewDescriptionOptions>();
    CLI::App* command = addCommand(
        add, action, "description", "Describe a parameter that values may have", options, runAddDescription);
    writing::NewDescription& description = options->description;
    command->add_option("NAME", description.name, "Name of the parameter")->required();
    command->add_option("--name-ru", description.russianName, "Name in Russian")->type_name("TEXT");
    command->add_option("--units", description.units, "Units of its values; 1 for a plain number")
        ->required()
        ->type_name("UNITS");
    command->add_option("--units-ru", description.russianUnits, "Units in Russian")->type_name("UNITS");
    command
        ->add_option("--types", description.types,
            "What values may be, letters of: C constant, t and p table of one argument, T and X of two")
        ->required()
        ->type_name("LETTERS");
    command
        ->add_option("--states", description.states,
            "Phases that may have it, letters of: S solid, L liquid, V gas; none for what substances and "
            "phase "
            "changes have")
        ->type_name("LETTERS");
    command->add_flag("--vector", description.vector, "Values may be vectors, beside scalars");
    command->add_flag("--no-scalar", options->noScalar, "With --vector: values are nothing but vectors");
    command->add_option("--id", options->id, "Its number; the next free one when not given")
        ->check(CLI::Range(0L, 2147483646L));
    options->keys.addTo(*command);
    addDryRun(*command, options->edit);
    command->footer(
        "Example:\n  qmdb add description materials Hardness --units 1 --types Ct --states S --symbol HV "
        "--argument-units K --name-ru \"Твёрдость\"");
}

} // namespace tool
