#include "commands/commands.h"

#include "commands/descriptionOptions.h"
#include "commands/editing.h"
#include "commands/mixtureOptions.h"
#include "commands/valueInput.h"
#include "common/names.h"
#include "writing/composition.h"
#include "writing/values.h"

#include <algorithm>
#include <fmt/ranges.h>
#include <iterator>

namespace tool {

namespace {

void addSubstanceArgument(CLI::App& command, std::string& substance)
{
    command.add_option("SUBSTANCE", substance, "Substance, by name or number")->required()->check(notEmpty());
}

void requireSomething(bool given)
{
    if (!given) {
        throw Failure("nothing is given that should change; --help lists the options");
    }
}

/// Options of "set substance", "set phase" and "set change".
struct SetOwnerOptions {
    explicit SetOwnerOptions(writing::DescriptorOf kind)
        : keys(kind)
    {
    }

    Location location;
    EditOptions edit;
    std::string substance;
    std::string phase;
    std::string change;
    std::string state;
    std::string from;
    std::string to;
    std::vector<std::string> components;
    bool pure = false;
    TextOptions texts;
    KeyOptions keys;
};

/// "solid" as the number that descriptors hold.
std::string stateNumber(const std::string& state)
{
    for (const MATTER_STATE one : { MATTER_STATE_SOLID, MATTER_STATE_LIQUID, MATTER_STATE_GAS }) {
        if (stateText(one) == state) {
            return std::to_string(static_cast<int>(one));
        }
    }
    throw Failure("a state is solid, liquid or gas, and \"{}\" is none", state);
}

writing::KeyChange endOfChange(
    const Database& database, const Substance& substance, const std::string& key, const std::string& wanted)
{
    const std::string kind = fmt::format("phase of {}", substance.name);
    return { key, std::to_string(choose(database.phases(substance.id), wanted, kind).id) };
}

/// The keys of a new composition; none when the composition stays.
std::vector<writing::KeyChange> compositionKeys(
    const SetOwnerOptions& options, const Resolver& resolver, const Substance& substance)
{
    if (options.components.empty() && !options.pure) {
        return {};
    }
    const std::vector<COMPONENT> composition = compositionOf(resolver, options.components);
    if (std::ranges::count(composition, substance.id, &COMPONENT::matterId) > 0) {
        throw Failure("{} cannot be a component of itself", label(substance.name, substance.id));
    }
    return writing::compositionKeys(composition);
}

writing::DescriptorChange changeOf(
    const SetOwnerOptions& options, const LockedDatabase& at, const Substance& substance)
{
    writing::DescriptorChange change { options.texts.changes(options.location.language),
        options.keys.changes() };
    if (!options.state.empty()) {
        change.keys.push_back({ "Aggreg", stateNumber(options.state) });
    }
    if (!options.from.empty()) {
        change.keys.push_back(endOfChange(at.database, substance, "Phase1", options.from));
    }
    if (!options.to.empty()) {
        change.keys.push_back(endOfChange(at.database, substance, "Phase2", options.to));
    }
    std::ranges::move(compositionKeys(options, at.resolver, substance), std::back_inserter(change.keys));
    requireSomething(!change.isEmpty());
    return change;
}

/// A phase change leads from one phase to another.
void requireTwoPhases(const Owner& owner, const writing::DescriptorChange& change)
{
    std::string ends[] = { std::to_string(owner.phase1), std::to_string(owner.phase2) };
    for (const writing::KeyChange& key : change.keys) {
        if (key.key == "Phase1" || key.key == "Phase2") {
            ends[key.key == "Phase1" ? 0 : 1] = key.value;
        }
    }
    if (owner.kind == Owner::Kind::Change && ends[0] == ends[1]) {
        throw Failure("a phase change leads from one phase to another");
    }
}

int runSetOwner(const SetOwnerOptions& options)
{
    const LockedDatabase at(options.location);
    const Substance substance = at.resolver.substance(options.substance);
    const Owner owner = chooseOwner(at.resolver, substance, options.phase, options.change);
    const writing::DescriptorChange change = changeOf(options, at, substance);
    requireTwoPhases(owner, change);
    writing::Edit edit(options.location.directory, options.location.language);
    writing::changeOwner(edit, substance.id, owner, change);
    return finishEdit(edit, options.edit, fmt::format("changed {}", ownerText(substance, owner)));
}

struct SetValueOptions {
    Location location;
    EditOptions edit;
    std::string substance;
    std::string phase;
    std::string change;
    std::string parameter;
    ValueInput value;
    KeyOptions keys { writing::DescriptorOf::Value };
};

writing::ValueChange changeOf(const SetValueOptions& options)
{
    writing::ValueChange change;
    change.keys = options.keys.changes();
    if (options.value.isGiven()) {
        GivenValue given = readValue(options.value);
        change.table = std::move(given.table);
        change.type = given.type;
        if (!given.comments.empty()) {
            change.comments = std::move(given.comments);
        }
    } else if (!options.value.comments.empty()) {
        change.comments = options.value.comments;
    } else if (!options.value.type.empty()) {
        throw Failure("--type goes with --value or --file");
    }
    requireSomething(change.table || change.comments || !change.keys.empty());
    return change;
}

int runSetValue(const SetValueOptions& options)
{
    const writing::ValueChange change = changeOf(options);
    const LockedDatabase at(options.location);
    const Substance substance = at.resolver.substance(options.substance);
    const Owner owner = chooseOwner(at.resolver, substance, options.phase, options.change);
    const Parameter parameter = at.resolver.parameter(substance, owner, options.parameter);
    writing::Edit edit(options.location.directory, options.location.language);
    const auto kept = writing::setValue(edit, substance.id, owner, parameter.id, change);
    const int status = finishEdit(edit, options.edit,
        fmt::format("changed {} of {}{}", label(parameter.name, parameter.id), ownerText(substance, owner),
            change.table ? ": " + formText(*change.table, change.type) : ""));
    if (!kept.empty()) {
        fmt::print(stderr, "qmdb: note: the new value keeps what was said about the one before: {}\n",
            fmt::join(kept, ", "));
    }
    return status;
}

struct SetDescriptionOptions {
    Location location;
    EditOptions edit;
    std::string parameter;
    TextOptions texts;
    DescriptionKeys keys;
};

int runSetDescription(const SetDescriptionOptions& options)
{
    const writing::DescriptorChange change { options.texts.changes(options.location.language),
        options.keys.changes() };
    requireSomething(!change.isEmpty());
    const DatabaseLock lock(options.location.directory);
    requireOpening(options.location);
    writing::Edit edit(options.location.directory, options.location.language);
    const Description description = chooseDescription(edit, options.parameter);
    writing::changeDescription(edit, description.id, change);
    return finishEdit(edit, options.edit,
        fmt::format("changed the description of {}", label(description.name, description.id)));
}

void addSetSubstance(CLI::App& set, Action& action)
{
    const auto options = std::make_shared<SetOwnerOptions>(writing::DescriptorOf::Substance);
    CLI::App* command
        = addCommand(set, action, "substance", "Change texts and keys of a substance", options, runSetOwner);
    addSubstanceArgument(*command, options->substance);
    options->texts.add(*command, writing::TextKey::Name, "--name", "Name");
    options->texts.add(*command, writing::TextKey::Comment, "--comment", "Comment");
    addSubstanceKeys(*command, options->keys);
    options->keys.addAny(*command);
    CLI::Option* component = addComponentOption(*command, options->components,
        "Component of a mixture and its molar fraction; once for each component of the new composition");
    command->add_flag("--pure", options->pure, "No mixture any more")->excludes(component);
    addDryRun(*command, options->edit);
    command->footer(
        "Examples:\n"
        "  qmdb set substance materials Water --formula H2O --aliases \"water;R718\"\n"
        "  qmdb set substance materials 11 --component Copper:0.94 --component Tin:0.06 --dry-run");
}

void addSetPhase(CLI::App& set, Action& action)
{
    const auto options = std::make_shared<SetOwnerOptions>(writing::DescriptorOf::Phase);
    CLI::App* command = addCommand(set, action, "phase", "Change a phase", options, runSetOwner);
    addSubstanceArgument(*command, options->substance);
    command->add_option("PHASE", options->phase, "Phase, by name or number")->required()->check(notEmpty());
    options->texts.add(*command, writing::TextKey::Name, "--name", "Name");
    command->add_option("--state", options->state, "solid, liquid or gas")->check(notEmpty());
    addDryRun(*command, options->edit);
    command->footer("Example:\n  qmdb set phase materials Water \"Ice Ih\" --name Ice --name-ru \"Лёд\"");
}

void addSetChange(CLI::App& set, Action& action)
{
    const auto options = std::make_shared<SetOwnerOptions>(writing::DescriptorOf::Change);
    CLI::App* command = addCommand(set, action, "change", "Change a phase change", options, runSetOwner);
    addSubstanceArgument(*command, options->substance);
    command->add_option("CHANGE", options->change, "Phase change, by name or number")
        ->required()
        ->check(notEmpty());
    options->texts.add(*command, writing::TextKey::Name, "--name", "Name");
    command->add_option("--from", options->from, "Phase before the change")
        ->type_name("PHASE")
        ->check(notEmpty());
    command->add_option("--to", options->to, "Phase after the change")->type_name("PHASE")->check(notEmpty());
    addDryRun(*command, options->edit);
    command->footer("Example:\n  qmdb set change materials Water Vaporisation --name Evaporation");
}

void addSetParameter(CLI::App& set, Action& action)
{
    const auto options = std::make_shared<SetValueOptions>();
    CLI::App* command = addCommand(
        set, action, "parameter", "Replace a value, or what is said about it", options, runSetValue);
    addSubstanceArgument(*command, options->substance);
    command->add_option("PARAMETER", options->parameter, "Parameter, by name or number")
        ->required()
        ->check(notEmpty());
    addOwnerOptions(*command, options->phase, options->change);
    addValueInput(*command, options->value)->require_option(0, 1);
    options->keys.add(
        *command, "--source", "Source", "Who measured or computed the value, when, for which range");
    options->keys.add(
        *command, "--accuracy", "Accuracy", "Accuracy of the value: a text, or a number with %");
    addDryRun(*command, options->edit);
    command->footer("Example:\n  qmdb set parameter materials Water \"Molar mass\" --source \"IAPWS, 2018\" "
                    "--value 0.018015268");
}

void addSetDescription(CLI::App& set, Action& action)
{
    const auto options = std::make_shared<SetDescriptionOptions>();
    CLI::App* command = addCommand(
        set, action, "description", "Change the description of a parameter", options, runSetDescription);
    command->add_option("PARAMETER", options->parameter, "Parameter, by name or number")
        ->required()
        ->check(notEmpty());
    options->texts.add(*command, writing::TextKey::Name, "--name", "Name");
    options->texts.add(*command, writing::TextKey::Units, "--units", "Units; the values stay as they are");
    options->keys.addRulesTo(*command);
    options->keys.addTo(*command);
    addDryRun(*command, options->edit);
    command->footer(
        "Example:\n  qmdb set description materials Density --symbol rho --argument-units \"Pa;K\"");
}

} // namespace

void addSetCommand(CLI::App& app, Action& action)
{
    CLI::App* set = app.add_subcommand("set", "Replace values, names and other texts");
    set->require_subcommand(1);
    set->footer("Example:\n  qmdb set substance materials Water --formula H2O");
    for (const auto addTo :
        { addSetSubstance, addSetPhase, addSetChange, addSetParameter, addSetDescription }) {
        addTo(*set, action);
    }
}

} // namespace tool
