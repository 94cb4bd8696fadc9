#include "commands/commands.h"

#include "commands/editing.h"
#include "commands/owners.h"
#include "commands/valueInput.h"
#include "common/names.h"
#include "writing/values.h"

namespace tool {

namespace {

struct ParameterOptions {
    Location location;
    EditOptions edit;
    std::string substance;
    std::string phase;
    std::string change;
    std::string parameter;
    ValueInput value;
    std::string argumentUnits;
    KeyOptions keys { writing::DescriptorOf::Value };
};

/// The units of the arguments belong to the description, which other values share.
void addArgumentUnits(writing::Edit& edit, const Description& description, const std::string& units)
{
    constexpr std::string_view key = "ArgumentUnits";
    const std::string present = writing::descriptionKey(edit, description.id, key);
    if (units.empty() || present == units) {
        return;
    }
    if (!present.empty()) {
        throw Failure("the arguments of {} have the units \"{}\" in its description, which all its values "
                      "share\n\"qmdb set description\" with --argument-units changes them",
            description.name, present);
    }
    writing::changeDescription(edit, description.id,
        { {}, { writing::checkedKey(writing::DescriptorOf::Description, key, units) } });
}

int runAddParameter(const ParameterOptions& options)
{
    const GivenValue given = readValue(options.value);
    const LockedDatabase at(options.location);
    const Substance substance = at.resolver.substance(options.substance);
    const Owner owner = chooseOwner(at.resolver, substance, options.phase, options.change);
    writing::Edit edit(options.location.directory, options.location.language, substance.id);
    const Description description = chooseDescription(edit, options.parameter);
    addArgumentUnits(edit, description, options.argumentUnits);
    writing::addValue(edit, substance.id, owner,
        { description.id, given.type, given.table, given.comments, options.keys.changes() });
    return finishEdit(edit, options.edit,
        fmt::format("added {} to {}: {}", label(description.name, description.id),
            ownerText(substance, owner), formText(given.table, given.type)));
}

} // namespace

void addParameterCommand(CLI::App& add, Action& action)
{
    const auto options = std::make_shared<ParameterOptions>();
    CLI::App* command = addCommand(add, action, "parameter",
        "Add a parameter with its value to a substance, a phase or a phase change", options, runAddParameter);
    command->add_option("SUBSTANCE", options->substance, "Substance, by name or number")
        ->required()
        ->check(notEmpty());
    command->add_option("PARAMETER", options->parameter, "Parameter, by name or number")
        ->required()
        ->check(notEmpty());
    addOwnerOptions(*command, options->phase, options->change);
    addValueInput(*command, options->value)->require_option(1);
    options->keys.add(
        *command, "--source", "Source", "Who measured or computed the value, when, for which range");
    options->keys.add(
        *command, "--accuracy", "Accuracy", "Accuracy of the value: a text, or a number with %");
    command
        ->add_option("--argument-units", options->argumentUnits,
            "Units of the arguments, for the description: \"K\", or \"Pa;K\" for pressure and temperature")
        ->type_name("UNITS");
    addDryRun(*command, options->edit);
    command->footer(
        "Examples:\n"
        "  qmdb add parameter mine Water Density --phase Ice --value 917\n"
        "  qmdb add parameter mine Water Density --phase Liquid --file density.csv --source \"measured "
        "2024\"\n"
        "  qmdb add parameter mine Water Density --phase Steam --type p --file - < steam.csv");
}

} // namespace tool
