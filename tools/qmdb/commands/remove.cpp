#include "commands/commands.h"

#include "commands/descriptionOptions.h"
#include "commands/editing.h"
#include "commands/owners.h"
#include "common/names.h"
#include "database/DatabaseLock.h"
#include "writing/values.h"

namespace tool {

namespace {

struct RemoveOptions {
    Location location;
    EditOptions edit;
    std::string substance;
    std::string phase;
    std::string change;
    std::string parameter;
};

std::size_t countValues(
    const Database& database, const Substance& substance, const std::vector<Owner>& owners)
{
    std::size_t values = 0;
    for (const Owner& owner : owners) {
        values += database.parameters(substance.id, owner).size();
    }
    return values;
}

std::string counted(std::size_t count, std::string_view what)
{
    return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

/// Shows what a removal takes, asks, and does it; what refers to it has been looked for before.
int finishRemoval(
    const writing::Edit& edit, const EditOptions& options, const std::string& what, const std::string& more)
{
    confirm(options, fmt::format("remove {}{}", what, more));
    return finishEdit(edit, options, fmt::format("removed {}", what));
}

int runRemoveSubstance(const RemoveOptions& options)
{
    const LockedDatabase at(options.location);
    const Substance substance = at.resolver.substance(options.substance);
    const auto owners = at.database.owners(substance.id);
    const std::size_t phases = at.database.phases(substance.id).size();
    writing::Edit edit(options.location.directory, options.location.language);
    writing::removeSubstance(edit, substance.id);
    return finishRemoval(edit, options.edit, label(substance.name, substance.id),
        fmt::format(" with {}, {} and {}", counted(phases, "phase"),
            counted(owners.size() - phases - 1, "phase change"),
            counted(countValues(at.database, substance, owners), "value")));
}

int runRemoveOwner(const RemoveOptions& options)
{
    const LockedDatabase at(options.location);
    const Substance substance = at.resolver.substance(options.substance);
    const Owner owner = chooseOwner(at.resolver, substance, options.phase, options.change);
    writing::Edit edit(options.location.directory, options.location.language);
    writing::removeOwner(edit, substance.id, owner);
    return finishRemoval(edit, options.edit, ownerText(substance, owner),
        fmt::format(" with {}", counted(countValues(at.database, substance, { owner }), "value")));
}

int runRemoveValue(const RemoveOptions& options)
{
    const LockedDatabase at(options.location);
    const Substance substance = at.resolver.substance(options.substance);
    const Owner owner = chooseOwner(at.resolver, substance, options.phase, options.change);
    const Parameter parameter = at.resolver.parameter(substance, owner, options.parameter);
    writing::Edit edit(options.location.directory, options.location.language);
    writing::removeValue(edit, substance.id, owner, parameter.id);
    return finishRemoval(edit, options.edit,
        fmt::format("{} of {}", label(parameter.name, parameter.id), ownerText(substance, owner)), "");
}

int runRemoveDescription(const RemoveOptions& options)
{
    const DatabaseLock lock(options.location.directory);
    requireOpening(options.location);
    writing::Edit edit(options.location.directory, options.location.language);
    const Description description = chooseDescription(edit, options.parameter);
    writing::removeDescription(edit, description.id);
    return finishRemoval(edit, options.edit,
        fmt::format("the description of {}", label(description.name, description.id)), "");
}

/// Adds a command of "remove", with the arguments that name what should go.
CLI::App* addRemoval(CLI::App& remove, Action& action, const std::string& name, const std::string& help,
    const std::shared_ptr<RemoveOptions>& options, int (*run)(const RemoveOptions&))
{
    CLI::App* command = addCommand(remove, action, name, help, options, run);
    if (name != "description") {
        command->add_option("SUBSTANCE", options->substance, "Substance, by name or number")
            ->required()
            ->check(notEmpty());
    }
    addYes(*command, options->edit);
    addDryRun(*command, options->edit);
    command->footer(fmt::format("Example:\n  qmdb remove {} materials {} --dry-run", name,
        name == "substance"         ? "Graphite"
            : name == "phase"       ? "Graphite \"Natural graphite\""
            : name == "change"      ? "Water Melting"
            : name == "description" ? "Hardness"
                                    : "Water Density --phase Liquid"));
    return command;
}

} // namespace

void addRemoveCommand(CLI::App& app, Action& action)
{
    CLI::App* remove = app.add_subcommand("remove", "Remove values, phases, phase changes, substances");
    remove->require_subcommand(1);
    remove->footer("Example:\n  qmdb remove substance materials Graphite --dry-run");
    const auto add = [&](const std::string& name, const std::string& help, int (*run)(const RemoveOptions&)) {
        const auto options = std::make_shared<RemoveOptions>();
        return std::pair { addRemoval(*remove, action, name, help, options, run), options };
    };
    add("substance", "Remove a substance with all that belongs to it", runRemoveSubstance);
    const auto [phase, phaseOptions] = add("phase", "Remove a phase with its values", runRemoveOwner);
    phase->add_option("PHASE", phaseOptions->phase, "Phase, by name or number")
        ->required()
        ->check(notEmpty());
    const auto [change, changeOptions]
        = add("change", "Remove a phase change with its values", runRemoveOwner);
    change->add_option("CHANGE", changeOptions->change, "Phase change, by name or number")
        ->required()
        ->check(notEmpty());
    const auto [value, valueOptions] = add("parameter", "Remove a value", runRemoveValue);
    value->add_option("PARAMETER", valueOptions->parameter, "Parameter, by name or number")
        ->required()
        ->check(notEmpty());
    addOwnerOptions(*value, valueOptions->phase, valueOptions->change);
    const auto [description, descriptionOptions] = add(
        "description", "Remove the description of a parameter that has no values", runRemoveDescription);
    description->add_option("PARAMETER", descriptionOptions->parameter, "Parameter, by name or number")
        ->required()
        ->check(notEmpty());
}

} // namespace tool
