#pragma once

#include "annotations/Annotations.h"
#include "database/Database.h"
#include "units/units.h"

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

namespace tool {

/// Adds --units, as often as wanted.
void addUnitsOption(CLI::App& command, std::vector<std::string>& units);

/// The argument of a value that a user names: by its name, its symbol, T for temperature, P for pressure, X.
std::optional<std::size_t> findArgument(
    const Parameter& parameter, const ParameterNotes& notes, std::string_view wanted);

/// True for the names that arguments have without a description's saying so: T, P, X, temperature, pressure.
bool isUsualArgument(std::string_view name);

/// "P (pressure) and T (temperature)": how the arguments of a value can be named.
std::string argumentsText(const ParameterNotes& notes);

/// How the numbers of a value become those that are shown.
struct ShownUnits {
    Conversion value;
    std::vector<Conversion> arguments; ///< first argument first

    void convert(Table& table) const;
};

/// The units that the user wants to see.
class UnitChoice {
public:
    /// Takes "bar", for values, and "T=degC", for arguments. Throws for what is no unit.
    explicit UnitChoice(const std::vector<std::string>& texts);

    /// Names the units wanted in the parameter and its notes. Throws WrongUnits when something is in units
    /// that cannot be converted to those wanted.
    ShownUnits choose(Parameter& parameter, ParameterNotes& notes) const;

    /// The same, leaving in their units what cannot be converted; of several the first that fits.
    ShownUnits chooseFitting(Parameter& parameter, ParameterNotes& notes) const;

    /// What has not been used yet, with "and" between; empty when all is.
    std::string unused() const;
    /// Throws Failure when something has not been used: an argument that nothing shown has, or more than one
    /// unit for the values.
    void requireUsed() const;

private:
    struct Wish {
        std::string argument; ///< empty for the value
        std::string units;
        mutable bool used = false;

        std::string text() const { return argument.empty() ? units : argument + "=" + units; }
    };

    ShownUnits chooseUnits(Parameter& parameter, ParameterNotes& notes, bool fitting) const;
    const Wish* wishFor(
        const Parameter& parameter, const ParameterNotes& notes, std::size_t index, bool fitting) const;
    const Wish* wishForValue(const ParameterNotes& notes, bool fitting) const;

    std::vector<Wish> wishes_;
};

} // namespace tool
