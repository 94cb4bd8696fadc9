#include "commands/owners.h"

#include "commands/subcommand.h"
#include "common/names.h"

#include <algorithm>
#include <fmt/ranges.h>

namespace tool {

namespace {

/// The option that names an owner.
std::string optionText(const Owner& owner)
{
    switch (owner.kind) {
    case Owner::Kind::Phase:
        return fmt::format("--phase \"{}\"", owner.name);
    case Owner::Kind::Change:
        return fmt::format("--change \"{}\"", owner.name);
    case Owner::Kind::Substance:
        break;
    }
    return "neither --phase nor --change";
}

/// The options for the other owners of a substance that have a parameter.
std::vector<std::string> optionsElsewhere(
    const Database& database, const Substance& substance, const Owner& here, std::string_view wanted)
{
    std::vector<std::string> options;
    for (const Owner& owner : database.owners(substance.id)) {
        const auto parameters = database.parameters(substance.id, owner);
        const bool has = std::ranges::any_of(parameters, [&](const Parameter& parameter) {
            return lowerCase(parameter.name) == lowerCase(wanted) || std::to_string(parameter.id) == wanted;
        });
        if (has && (owner.kind != here.kind || owner.id != here.id)) {
            options.push_back(optionText(owner));
        }
    }
    return options;
}

} // namespace

void addOwnerOptions(CLI::App& command, OwnerOptions& options)
{
    auto* phase = command.add_option("--phase", options.phases, "Phase, by name or number");
    auto* change = command.add_option("--change", options.changes, "Phase change, by name or number");
    phase->type_name("PHASE")->allow_extra_args(false)->check(notEmpty());
    change->type_name("CHANGE")->allow_extra_args(false)->check(notEmpty())->excludes(phase);
}

void addOwnerOptions(CLI::App& command, std::string& phase, std::string& change)
{
    auto* first = command.add_option(
        "--phase", phase, "Phase, by name or number; without it and --change the substance itself");
    auto* second = command.add_option("--change", change, "Phase change, by name or number");
    first->type_name("PHASE")->check(notEmpty());
    second->type_name("CHANGE")->check(notEmpty())->excludes(first);
}

std::vector<Owner> chooseOwners(
    const Database& database, const Substance& substance, const OwnerOptions& options)
{
    std::vector<Owner> owners;
    for (const std::string& phase : options.phases) {
        const std::string kind = fmt::format("phase of {}", substance.name);
        owners.push_back(choose(database.phases(substance.id), phase, kind));
    }
    for (const std::string& change : options.changes) {
        const std::string kind = fmt::format("phase change of {}", substance.name);
        owners.push_back(choose(database.changes(substance.id), change, kind));
    }
    return owners.empty() ? std::vector<Owner>(1) : owners;
}

Parameter chooseParameter(
    const Database& database, const Substance& substance, const Owner& owner, std::string_view wanted)
{
    try {
        const std::string kind = fmt::format("parameter of {}", ownerText(substance, owner));
        return choose(database.parameters(substance.id, owner), wanted, kind);
    } catch (const Failure& failure) {
        const auto options = optionsElsewhere(database, substance, owner, wanted);
        throw Failure("{}{}{}", failure.what(), options.empty() ? "" : "\nthere is such a parameter with ",
            fmt::join(options, ", "));
    }
}

std::string ownerText(const Substance& substance, const Owner& owner)
{
    switch (owner.kind) {
    case Owner::Kind::Phase:
        return fmt::format("{}, phase {}", substance.name, owner.name);
    case Owner::Kind::Change:
        return fmt::format("{}, phase change {}", substance.name, owner.name);
    case Owner::Kind::Substance:
        break;
    }
    return substance.name;
}

} // namespace tool
