#pragma once

#include "annotations/Annotations.h"
#include "database/Database.h"

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace tool {

/// The options that name what a parameter is attached to, as the user gives them.
struct OwnerOptions {
    std::vector<std::string> phases;
    std::vector<std::string> changes;
};

/// Adds --phase and --change, of which a command takes one kind, each as often as wanted.
void addOwnerOptions(CLI::App& command, OwnerOptions& options);

/// The same for a command that takes one phase or phase change.
void addOwnerOptions(CLI::App& command, std::string& phase, std::string& change);

/// A substance, and what of it is asked for: the substance itself, phases or phase changes.
struct Material {
    Substance substance;
    std::vector<Owner> owners;
};

/// Finds what users name: by display name or number, else by its name in the other language, its formula, an
/// alias, its CAS number, its symbol, a phase also by its state.
class Resolver {
public:
    Resolver(const Database& database, const Annotations& annotations)
        : database_(database)
        , annotations_(annotations)
    {
    }

    Substance substance(std::string_view wanted) const;
    Owner phase(const Substance& substance, std::string_view wanted) const;
    Owner change(const Substance& substance, std::string_view wanted) const;

    /// The owners that the options name; the substance itself when they name none.
    std::vector<Owner> owners(const Substance& substance, const OwnerOptions& options) const;

    /// "Water", with the owners that the options name; or "Water:Steam", whose phase or phase change counts
    /// instead of them. A substance whose name holds a colon is found, too.
    Material material(std::string_view wanted, const OwnerOptions& options) const;

    /// The message of a miss tells where else the substance has such a parameter.
    Parameter parameter(const Substance& substance, const Owner& owner, std::string_view wanted) const;

    /// One of a list of parameters, called `kind` in messages.
    const Parameter& parameter(
        const std::vector<Parameter>& all, std::string_view wanted, std::string_view kind) const;

private:
    Owner phaseOrChange(const Substance& substance, std::string_view wanted) const;
    std::vector<std::string> optionsElsewhere(
        const Substance& substance, const Owner& here, std::string_view wanted) const;
    const Owner& chooseOwner(const std::vector<Owner>& all, const Substance& substance,
        std::string_view wanted, std::string_view kind) const;

    const Database& database_;
    const Annotations& annotations_;
};

/// "Water", "Water, phase Ice" and the like.
std::string ownerText(const Substance& substance, const Owner& owner);

} // namespace tool
