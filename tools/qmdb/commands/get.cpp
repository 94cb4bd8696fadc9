#include "commands/commands.h"

#include "annotations/Annotations.h"
#include "commands/atOptions.h"
#include "commands/misreadings.h"
#include "commands/owners.h"
#include "common/characters.h"
#include "output/Output.h"
#include "output/json.h"
#include "output/valueTable.h"

#include <algorithm>

namespace tool {

namespace {

struct GetOptions {
    Location location;
    std::string material;
    OwnerOptions owner;
    std::string parameter;
    std::vector<std::string> at;
    bool nearest = false;
    std::vector<std::string> units;
    bool csv = false;
    bool json = false;
    bool source = false;
};

Json pointJson(const Table& table, const Point& point)
{
    Json json = Json::array();
    for (const double number : numbersOf(table, point)) {
        json.push_back(number);
    }
    return json;
}

Json valueJson(const ShownValue& value, const GetOptions& options)
{
    const Owner& owner = value.owner;
    Json json { { "substance", { { "id", value.substance.id }, { "name", value.substance.name } } } };
    if (owner.kind != Owner::Kind::Substance) {
        json[owner.kind == Owner::Kind::Phase ? "phase" : "change"]
            = { { "id", owner.id }, { "name", owner.name } };
    }
    json["parameter"] = parameterJson(value.parameter, value.notes);
    json["arguments"] = argumentNames(value.parameter.type);
    if (!options.at.empty() && value.table.arguments > 0) {
        json["read"] = options.nearest ? "nearest" : "linear";
    }
    json["rows"] = Json::array();
    for (const Point& point : value.table.points) {
        json["rows"].push_back(pointJson(value.table, point));
    }
    return json;
}

/// An object for one value, an array for several.
void printJson(Output& output, const std::vector<ShownValue>& values, const GetOptions& options)
{
    Json all = Json::array();
    for (const ShownValue& value : values) {
        all.push_back(valueJson(value, options));
    }
    output.print("{}\n", dump(values.size() == 1 ? all.front() : all));
}

/// A comment line with the source and the accuracy.
void printSource(Output& output, const ShownValue& value, bool several)
{
    const std::string source = sourceText(value.notes);
    output.print("# {}{}{}{}\n", several ? value.title : "", several ? ": " : "",
        source.empty() ? "" : "Source: ", source.empty() ? "no source is given" : source);
}

void printTables(Output& output, const std::vector<ShownValue>& values, bool source)
{
    const bool several = values.size() > 1;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const ShownValue& value = values[i];
        const bool constant = value.table.arguments == 0;
        output.write(i > 0 && !(constant && values[i - 1].table.arguments == 0) ? "\n" : "");
        if (source) {
            printSource(output, value, false);
        }
        constant && !several ? printConstant(output, value) : printAligned(output, value);
    }
}

void print(const std::vector<ShownValue>& values, const GetOptions& options)
{
    Output output;
    if (options.json) {
        printJson(output, values, options);
    } else if (options.csv) {
        for (const ShownValue& value : values) {
            if (options.source) {
                printSource(output, value, values.size() > 1);
            }
        }
        printCsv(output, values);
    } else {
        printTables(output, values, options.source);
    }
    output.finish();
}

/// The table read at the points that the user asks for, in the units shown.
Table readPoints(const ShownValue& value, const ShownUnits& units, const AtPoints& at, Method method)
{
    const std::string what = fmt::format("{} of {}", value.parameter.name, value.title);
    const auto points = at.points(value.parameter, value.notes);
    Table read { value.table.arguments, value.table.components, {} };
    try {
        const Interpolation interpolation(value.table);
        for (const auto& point : points) {
            const auto result = readAt(interpolation, units, point, method);
            if (const auto* outside = std::get_if<Outside>(&result)) {
                throw Failure(outsideText(*outside, value.notes));
            }
            read.points.push_back(std::get<Point>(result));
        }
    } catch (const Failure& failure) {
        throw Failure("{}: {}", what, failure.what());
    }
    return read;
}

/// Puts the table into the units, and to the points, that the user asks for.
void present(ShownValue& value, const UnitChoice& choice, const AtPoints& at, Method method)
{
    const ShownUnits units = choice.choose(value.parameter, value.notes);
    if (!at.isEmpty() && value.table.arguments > 0) {
        value.table = readPoints(value, units, at, method);
        return;
    }
    if (!at.isEmpty()) {
        fmt::print(stderr,
            "qmdb: note: {} of {} is a constant: it has no arguments, and --at changes nothing\n",
            value.parameter.name, value.title);
    }
    units.convert(value.table);
}

/// Throws Failure when the material names a phase and the options name others: one of them would be left out.
void requireAgreement(const Resolver& resolver, const Material& material, const GetOptions& options)
{
    const auto number = [](const Owner& owner) { return std::pair(owner.kind, owner.id); };
    const bool given = !options.owner.phases.empty() || !options.owner.changes.empty();
    if (given
        && !std::ranges::equal(
            resolver.owners(material.substance, options.owner), material.owners, {}, number, number)) {
        throw Failure("{} and the options name different phases; leave out --phase and --change",
            shown(options.material));
    }
}

std::vector<ShownValue> readValues(const GetOptions& options)
{
    const Database database(options.location);
    const Annotations annotations(options.location.directory);
    const Resolver resolver(database, annotations);
    const Material material = resolver.material(options.material, options.owner);
    requireAgreement(resolver, material, options);
    const auto& [substance, owners] = material;
    std::vector<ShownValue> values;
    for (const Owner& owner : owners) {
        const Parameter parameter = resolver.parameter(substance, owner, options.parameter);
        const Table table = database.value(substance.id, owner, parameter.id);
        const ParameterNotes notes = annotations.parameter(substance.id, owner, parameter);
        warnOfMisreadings(annotations, notes.dataFile, substance, owner, parameter);
        values.push_back({ ownerText(substance, owner), substance, owner, parameter, notes, table });
    }
    return values;
}

int runGet(const GetOptions& options)
{
    const UnitChoice units(options.units);
    const AtPoints at(options.at);
    if (options.nearest && at.isEmpty()) {
        throw Failure("--nearest needs --at, as in --at T=350");
    }
    std::vector<ShownValue> values = readValues(options);
    for (ShownValue& value : values) {
        present(value, units, at, options.nearest ? Method::Nearest : Method::Linear);
    }
    units.requireUsed();
    print(values, options);
    return ExitDone;
}

} // namespace

void addGetCommand(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<GetOptions>();
    CLI::App* command = addCommand(app, action, "get", "Show the value of a parameter", options, runGet);
    command
        ->add_option("MATERIAL", options->material,
            "SUBSTANCE or SUBSTANCE:PHASE, by name, number, formula, alias or CAS number")
        ->required()
        ->check(notEmpty());
    command->add_option("PARAMETER", options->parameter, "Parameter, by name, number or symbol")
        ->required()
        ->check(notEmpty());
    addOwnerOptions(*command, options->owner);
    addAtOption(*command, options->at);
    command->add_flag("--nearest", options->nearest,
        "With --at: the point of the table that is nearest, instead of one between its points");
    addUnitsOption(*command, options->units);
    auto* csv = command->add_flag("--csv", options->csv, "As CSV with a head line");
    command->add_flag("--json", options->json, "As JSON")->excludes(csv);
    command->add_flag("--source", options->source,
        "Begin with a comment line: where the value comes from, and how accurate it is; JSON always tells");
    command->footer("Examples:\n"
                    "  qmdb get materials Water \"Molar mass\" --units g/mol\n"
                    "  qmdb get materials Water:Liquid Density --at P=1e6,T=350\n"
                    "  qmdb get materials Copper:Solid k --at T=20:200:20 --units T=degC --csv");
}

} // namespace tool
