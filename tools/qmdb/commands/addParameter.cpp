#include "commands/commands.h"

#include "commands/owners.h"
#include "common/characters.h"
#include "common/encodings.h"
#include "common/names.h"
#include "common/numbers.h"
#include "common/vocabulary.h"
#include "database/DatabaseLock.h"
#include "database/valueObjects.h"
#include "input/tableRows.h"
#include "output/Output.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fmt/ranges.h>
#include <fstream>
#include <iostream>
#include <map>

namespace tool {

namespace {

struct ParameterOptions {
    Location location;
    std::string substance;
    std::string phase;
    std::string parameter;
    std::string type;
    std::vector<std::string> value;
    std::string file;
};

/// The parameters that the database is known to describe: those that some phase may take and those that
/// something has already. The library lists no others.
std::map<long, std::string> knownParameters(const Database& database)
{
    std::map<long, std::string> known;
    for (const Substance& substance : database.substances()) {
        for (const Owner& owner : database.owners(substance.id)) {
            for (const Parameter& parameter : database.parameters(substance.id, owner)) {
                known[parameter.id] = parameter.name;
            }
            if (owner.kind == Owner::Kind::Phase) {
                for (const Description& description : database.descriptions(substance.id, owner.id)) {
                    known[description.id] = description.name;
                }
            }
        }
    }
    return known;
}

long chooseDescribed(const Database& database, const std::string& wanted)
{
    if (const auto number = asWholeNumber(wanted)) {
        return *number;
    }
    std::vector<Choice> choices;
    for (const auto& [id, name] : knownParameters(database)) {
        choices.push_back({ id, name });
    }
    try {
        return choose(choices, wanted, "parameter").id;
    } catch (const Failure& failure) {
        throw Failure("{}\na description that no phase may take is known by its number only, "
                      "until something has the parameter",
            failure.what());
    }
}

double numberOfOption(const std::string& text)
{
    const auto number = asFiniteNumber(text);
    if (!number) {
        throw Failure(
            "--value takes finite numbers, and {} is none; it is the last option on the line", shown(text));
    }
    return *number;
}

Table tableOfOptions(const ParameterOptions& options)
{
    if (!options.value.empty()) {
        if (options.value.size() == 2) {
            throw Failure("--value takes one number, or the three components of a vector");
        }
        Table table;
        table.components = options.value.size();
        table.points.resize(1);
        std::ranges::transform(options.value, table.points.front().components.begin(), numberOfOption);
        return table;
    }
    if (options.file == "-") {
        return tableOf(readRows(std::cin, "standard input"), "standard input");
    }
    std::ifstream input(toLocale(options.file));
    if (!input) {
        throw Failure("cannot read \"{}\": {}", options.file, std::strerror(errno));
    }
    return tableOf(readRows(input, options.file), options.file);
}

/// The type that the user gives, else the first that a table of so many arguments may have.
PARAM_TYPE typeOf(const ParameterOptions& options, const Table& table)
{
    constexpr std::pair<std::size_t, std::size_t> runs[] = { { 0, 1 }, { 1, 2 }, { 3, 2 } };
    const auto [first, count] = runs[table.arguments];
    const std::string_view possible = vocabulary::typeLetters.substr(first, count);
    if (!options.type.empty() && possible.find(options.type) == std::string_view::npos) {
        throw Failure("type {} does not fit: a value with {} arguments has the type {}", options.type,
            table.arguments, fmt::join(possible, " or "));
    }
    const std::string letter = options.type.empty() ? std::string(possible.substr(0, 1)) : options.type;
    return static_cast<PARAM_TYPE>(vocabulary::typeLetters.find(letter) + 1);
}

int runAddParameter(const ParameterOptions& options)
{
    const Table table = tableOfOptions(options);
    const DatabaseLock lock(options.location.directory);
    Database database(options.location);
    const Substance substance = choose(database.substances(), options.substance, "substance");
    Owner owner;
    if (!options.phase.empty()) {
        owner = choose(
            database.phases(substance.id), options.phase, fmt::format("phase of {}", substance.name));
    }
    const long id = chooseDescribed(database, options.parameter);
    PARAMETER record {};
    record.id = id;
    record.type = typeOf(options, table);
    record.vector = table.components > 1;
    const auto value = valueObject(table, record.type);
    database.addParameter(substance.id, owner, record, *value);
    // The library does not report a data file that the disk refused; reading it back does.
    const std::size_t points = database.value(substance.id, owner, id).points.size();
    const auto attached = database.parameters(substance.id, owner);
    const std::string name = std::ranges::find(attached, id, &Parameter::id)->name;
    Output output;
    output.print("added {} to {}: {}, {}, {} {}\n", label(name, id), ownerText(substance, owner),
        typeText(record.type), record.vector ? "vector" : "scalar", points, points == 1 ? "point" : "points");
    output.finish();
    if (const std::size_t rounded = roundedNumbers(table); rounded > 0) {
        fmt::print(stderr, "qmdb: note: {} {} rounded to the six significant digits that are stored\n",
            rounded, rounded == 1 ? "number was" : "numbers were");
    }
    return ExitDone;
}

} // namespace

void addParameterCommand(CLI::App& add, Action& action)
{
    const auto options = std::make_shared<ParameterOptions>();
    CLI::App* command = addCommand(
        add, action, "parameter", "Add a parameter to a substance or to a phase", options, runAddParameter);
    command->add_option("SUBSTANCE", options->substance, "Substance, by name or number")
        ->required()
        ->check(notEmpty());
    command->add_option("PARAMETER", options->parameter, "Parameter, by name or number")
        ->required()
        ->check(notEmpty());
    command
        ->add_option("--phase", options->phase, "Phase, by name or number; without it the substance itself")
        ->type_name("PHASE")
        ->check(notEmpty());
    std::vector<std::string> types;
    for (const char letter : vocabulary::typeLetters) {
        types.emplace_back(1, letter);
    }
    command
        ->add_option("--type", options->type,
            "C constant, t or p table of one argument, T or X of two; by default C, t or T")
        ->check(CLI::IsMember(types));
    auto* input = command->add_option_group("Value", "One of these");
    input->add_option("--value", options->value, "A constant, or the three components of a vector")
        ->expected(1, 3)
        ->type_name("NUMBER");
    input
        ->add_option("--file", options->file,
            "A table: rows of argument(s) and value, or three components, in CSV or between blanks; - is "
            "standard input")
        ->type_name("FILE")
        ->check(notEmpty());
    input->require_option(1);
    command->footer("Examples:\n"
                    "  qmdb add parameter mine Water Density --phase Ice --value 917\n"
                    "  qmdb add parameter mine Water Density --phase Liquid --file density.csv\n"
                    "  qmdb add parameter mine Water Density --phase Steam --type p --file - < steam.csv");
}

} // namespace tool
