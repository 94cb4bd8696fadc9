#pragma once

#include "commands/unitOptions.h"
#include "database/interpolation.h"

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace tool {

/// Adds --at, as often as wanted.
void addAtOption(CLI::App& command, std::vector<std::string>& at);

/// Where a user wants to know a value: numbers for arguments by name.
class AtPoints {
public:
    /// Takes "T=350", "T=350:450:10" and "P=1e6,T=350". Throws Failure for what is none of these.
    explicit AtPoints(const std::vector<std::string>& texts);

    bool isEmpty() const noexcept { return named_.empty(); }
    /// Throws Failure when something has more than one number.
    void requireSingle() const;

    /// The points for a value in the units shown, the second argument running first; a constant's point has
    /// no arguments. Throws Failure unless exactly its arguments are named.
    std::vector<std::vector<double>> points(const Parameter& parameter, const ParameterNotes& notes) const;

    /// The point for a value that may do without some of what is named; nothing when an argument of it is not
    /// named. `used` is set for the names that are arguments of it.
    std::optional<std::vector<double>> point(
        const Parameter& parameter, const ParameterNotes& notes, std::vector<bool>& used) const;

    const std::string& name(std::size_t index) const { return named_[index].name; }
    std::size_t count() const noexcept { return named_.size(); }
    /// "T = 300" with units where all values have the same.
    std::string text(const std::vector<std::string>& units) const;

private:
    struct Named {
        std::string name;
        std::vector<double> numbers;
    };

    const Named* find(const Parameter& parameter, const ParameterNotes& notes, std::size_t argument) const;

    std::vector<Named> named_;
};

/// Reads a table, whose numbers are as the database has them, at a point in the units shown; the result is in
/// the units shown.
std::variant<Point, Outside> readAt(const Interpolation& interpolation, const ShownUnits& units,
    const std::vector<double>& point, Method method);

/// "T = 800 K is outside 280 to 370 K".
std::string outsideText(const Outside& outside, const ParameterNotes& notes);

} // namespace tool
