#include "commands/owners.h"

#include "commands/subcommand.h"
#include "common/names.h"
#include "common/numbers.h"

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

std::vector<std::string> joined(std::vector<std::string> names, const std::vector<std::string>& more)
{
    names.insert(names.end(), more.begin(), more.end());
    return names;
}

constexpr char phaseSeparator = ':';

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

Substance Resolver::substance(std::string_view wanted) const
{
    return choose<Substance>(database_.substances(), wanted, "substance", [this](const Substance& substance) {
        const SubstanceNotes notes = annotations_.substance(substance.id);
        return joined(joined(annotations_.names(substance.id), notes.aliases), { notes.formula, notes.cas });
    });
}

const Owner& Resolver::chooseOwner(const std::vector<Owner>& all, const Substance& substance,
    std::string_view wanted, std::string_view kind) const
{
    return choose<Owner>(all, wanted, fmt::format("{} of {}", kind, substance.name), [&](const Owner& owner) {
        const bool phase = owner.kind == Owner::Kind::Phase;
        return joined(annotations_.names(substance.id, owner), { phase ? stateText(owner.state) : "" });
    });
}

Owner Resolver::phase(const Substance& substance, std::string_view wanted) const
{
    return chooseOwner(database_.phases(substance.id), substance, wanted, "phase");
}

Owner Resolver::change(const Substance& substance, std::string_view wanted) const
{
    return chooseOwner(database_.changes(substance.id), substance, wanted, "phase change");
}

Owner Resolver::phaseOrChange(const Substance& substance, std::string_view wanted) const
{
    std::vector<Owner> all = database_.phases(substance.id);
    const std::vector<Owner> changes = database_.changes(substance.id);
    if (asWholeNumber(wanted)) { // phases and phase changes are numbered apart
        return chooseOwner(all, substance, wanted, "phase");
    }
    all.insert(all.end(), changes.begin(), changes.end());
    return chooseOwner(all, substance, wanted, "phase or phase change");
}

std::vector<Owner> Resolver::owners(const Substance& substance, const OwnerOptions& options) const
{
    std::vector<Owner> owners;
    for (const std::string& wanted : options.phases) {
        owners.push_back(phase(substance, wanted));
    }
    for (const std::string& wanted : options.changes) {
        owners.push_back(change(substance, wanted));
    }
    return owners.empty() ? std::vector<Owner>(1) : owners;
}

Material Resolver::material(std::string_view wanted, const OwnerOptions& options) const
{
    const std::size_t colon = wanted.rfind(phaseSeparator);
    if (colon == std::string_view::npos || colon == 0 || colon + 1 == wanted.size()) {
        const Substance found = substance(wanted);
        return { found, owners(found, options) };
    }
    try {
        const Substance found = substance(wanted);
        return { found, owners(found, options) };
    } catch (const UnknownName&) {
        const Substance found = substance(wanted.substr(0, colon));
        return { found, { phaseOrChange(found, wanted.substr(colon + 1)) } };
    }
}

const Parameter& Resolver::parameter(
    const std::vector<Parameter>& all, std::string_view wanted, std::string_view kind) const
{
    return choose<Parameter>(all, wanted, kind, [this](const Parameter& parameter) {
        return joined(
            annotations_.descriptionNames(parameter.id), { annotations_.description(parameter.id).symbol });
    });
}

Parameter Resolver::parameter(const Substance& substance, const Owner& owner, std::string_view wanted) const
{
    try {
        const std::string kind = fmt::format("parameter of {}", ownerText(substance, owner));
        return parameter(database_.parameters(substance.id, owner), wanted, kind);
    } catch (const Failure& failure) {
        const auto options = optionsElsewhere(substance, owner, wanted);
        throw UnknownName("{}{}{}", failure.what(),
            options.empty() ? "" : "\nthere is such a parameter with ", fmt::join(options, ", "));
    }
}

/// The options for the other owners of a substance that have a parameter.
std::vector<std::string> Resolver::optionsElsewhere(
    const Substance& substance, const Owner& here, std::string_view wanted) const
{
    const auto has = [&](const Owner& owner) {
        try {
            parameter(database_.parameters(substance.id, owner), wanted, "parameter");
            return true;
        } catch (const UnknownName&) {
            return false;
        } catch (const Failure&) { // several
            return true;
        }
    };
    std::vector<std::string> options;
    for (const Owner& owner : database_.owners(substance.id)) {
        if (owner.kind == here.kind && owner.id == here.id) {
            continue;
        }
        if (has(owner)) {
            options.push_back(optionText(owner));
        }
    }
    return options;
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
