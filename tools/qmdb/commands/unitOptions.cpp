#include "commands/unitOptions.h"

#include "commands/subcommand.h"
#include "common/characters.h"
#include "common/names.h"

#include <algorithm>
#include <fmt/ranges.h>

namespace tool {

namespace {

/// The letter by which formulas know an argument; empty when there is none.
std::string_view letterOf(const ArgumentNotes& argument)
{
    return argument.name == "temperature" ? "T" : argument.name == "pressure" ? "P" : "";
}

bool isCalled(const ArgumentNotes& argument, std::string_view letter, std::string_view wanted)
{
    const std::string lower = lowerCase(wanted);
    const auto fits = [&](std::string_view name) { return !name.empty() && lowerCase(name) == lower; };
    return fits(argument.name) || fits(argument.symbol) || fits(letterOf(argument))
        || (letter == "X" && fits(letter));
}

std::string argumentText(const ArgumentNotes& argument)
{
    const std::string_view letter = letterOf(argument);
    const bool both = !letter.empty() && lowerCase(letter) != lowerCase(argument.name);
    return both ? fmt::format("{} ({})", letter, argument.name) : printable(argument.symbol);
}

/// Throws WrongUnits with what it is whose units are not to be had in others.
Conversion conversionOf(std::string_view what, const std::string& from, const std::string& to)
{
    if (from.empty()) {
        throw WrongUnits("{} cannot be shown in {}: the database does not tell its units", what, shown(to));
    }
    try {
        return conversion(from, to);
    } catch (const WrongUnits& failure) {
        throw WrongUnits("{}: {}", what, failure.what());
    }
}

} // namespace

void addUnitsOption(CLI::App& command, std::vector<std::string>& units)
{
    command
        .add_option(
            "--units", units, "Show values in these units, or an argument: \"g/cm3\", \"T=degC\", \"P=bar\"")
        ->type_name("[ARGUMENT=]UNITS")
        ->allow_extra_args(false)
        ->check(notEmpty());
}

std::optional<std::size_t> findArgument(
    const Parameter& parameter, const ParameterNotes& notes, std::string_view wanted)
{
    const auto letters = argumentNames(parameter.type);
    for (std::size_t i = notes.arguments.size(); i-- > 0;) {
        if (isCalled(notes.arguments[i], letters[i], wanted)) {
            return i;
        }
    }
    return std::nullopt;
}

bool isUsualArgument(std::string_view name)
{
    constexpr std::string_view usual[] = { "t", "p", "x", "temperature", "pressure" };
    return std::ranges::find(usual, lowerCase(name)) != std::end(usual);
}

std::string argumentsText(const ParameterNotes& notes)
{
    std::vector<std::string> texts;
    std::ranges::transform(notes.arguments, std::back_inserter(texts), argumentText);
    return fmt::format("{}", fmt::join(texts, " and "));
}

void ShownUnits::convert(Table& table) const
{
    for (Point& point : table.points) {
        for (std::size_t i = 0; i < table.arguments; ++i) {
            point.arguments[i] = arguments[i](point.arguments[i]);
        }
        for (std::size_t i = 0; i < table.components; ++i) {
            point.components[i] = value(point.components[i]);
        }
    }
}

UnitChoice::UnitChoice(const std::vector<std::string>& texts)
{
    for (const std::string& text : texts) {
        const std::size_t sign = text.find('=');
        const bool named = sign != std::string::npos;
        Wish wish { named ? text.substr(0, sign) : "", named ? text.substr(sign + 1) : text };
        if (named && (wish.argument.empty() || wish.units.empty())) {
            throw Failure("--units {}: write ARGUMENT=UNITS, as in T=degC", shown(text));
        }
        requireUnit(wish.units);
        wishes_.push_back(std::move(wish));
    }
}

const UnitChoice::Wish* UnitChoice::wishForValue(const ParameterNotes& notes, bool fitting) const
{
    for (const Wish& wish : wishes_) {
        if (wish.argument.empty() && (!fitting || findConversion(notes.units, wish.units))) {
            return &wish;
        }
    }
    return nullptr;
}

const UnitChoice::Wish* UnitChoice::wishFor(
    const Parameter& parameter, const ParameterNotes& notes, std::size_t index, bool fitting) const
{
    for (const Wish& wish : wishes_) {
        const bool named = !wish.argument.empty() && findArgument(parameter, notes, wish.argument) == index;
        if (named && (!fitting || findConversion(notes.arguments[index].units, wish.units))) {
            return &wish;
        }
    }
    return nullptr;
}

ShownUnits UnitChoice::chooseUnits(Parameter& parameter, ParameterNotes& notes, bool fitting) const
{
    ShownUnits units;
    units.arguments.resize(notes.arguments.size());
    for (std::size_t i = 0; i < notes.arguments.size(); ++i) {
        if (const Wish* wish = wishFor(parameter, notes, i, fitting)) {
            ArgumentNotes& argument = notes.arguments[i];
            units.arguments[i] = conversionOf(argumentText(argument), argument.units, wish->units);
            argument.units = wish->units;
            wish->used = true;
        }
    }
    if (const Wish* wish = wishForValue(notes, fitting)) {
        units.value = conversionOf(parameter.name, notes.units, wish->units);
        parameter.units = wish->units;
        notes.units = wish->units;
        wish->used = true;
    }
    return units;
}

ShownUnits UnitChoice::choose(Parameter& parameter, ParameterNotes& notes) const
{
    return chooseUnits(parameter, notes, false);
}

ShownUnits UnitChoice::chooseFitting(Parameter& parameter, ParameterNotes& notes) const
{
    return chooseUnits(parameter, notes, true);
}

std::string UnitChoice::unused() const
{
    std::vector<std::string> texts;
    for (const Wish& wish : wishes_) {
        if (!wish.used) {
            texts.push_back(printable(wish.text()));
        }
    }
    return fmt::format("{}", fmt::join(texts, " and "));
}

void UnitChoice::requireUsed() const
{
    if (const std::string texts = unused(); !texts.empty()) {
        throw Failure(
            "--units {} changes nothing: give the value's units once, and arguments that it has", texts);
    }
}

} // namespace tool
