#include "commands/commands.h"

#include "annotations/Annotations.h"
#include "commands/misreadings.h"
#include "commands/owners.h"
#include "output/Output.h"
#include "output/json.h"
#include "output/valueTable.h"

namespace tool {

namespace {

struct GetOptions {
    Location location;
    std::string substance;
    OwnerOptions owner;
    std::string parameter;
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

Json ownerJson(const Owner& owner)
{
    return owner.kind == Owner::Kind::Substance ? Json()
                                                : Json { { "id", owner.id }, { "name", owner.name } };
}

std::string valueJson(const Substance& substance, const Owner& owner, const Parameter& parameter,
    const ParameterNotes& notes, const Table& table)
{
    Json json { { "substance", { { "id", substance.id }, { "name", substance.name } } } };
    if (owner.kind != Owner::Kind::Substance) {
        json[owner.kind == Owner::Kind::Phase ? "phase" : "change"] = ownerJson(owner);
    }
    json["parameter"] = parameterJson(parameter, notes);
    json["arguments"] = argumentNames(parameter.type);
    json["rows"] = Json::array();
    for (const Point& point : table.points) {
        json["rows"].push_back(pointJson(table, point));
    }
    return dump(json);
}

/// A comment line with the source and the accuracy.
void printSource(Output& output, const ValueNotes& notes)
{
    const std::string source = sourceText(notes);
    output.print(
        "# {}{}\n", source.empty() ? "" : "Source: ", source.empty() ? "no source is given" : source);
}

int runGet(const GetOptions& options)
{
    const Database database(options.location);
    const Annotations annotations(options.location.directory);
    const Resolver resolver(database, annotations);
    const auto [substance, owners] = resolver.material(options.substance, options.owner);
    const Owner& owner = owners.front();
    const Parameter parameter = resolver.parameter(substance, owner, options.parameter);
    const Table table = database.value(substance.id, owner, parameter.id);
    const ParameterNotes notes = annotations.parameter(substance.id, owner, parameter);
    warnOfMisreadings(annotations, notes.dataFile, substance, owner, parameter);
    Output output;
    if (options.source && !options.json) {
        printSource(output, notes);
    }
    if (options.json) {
        output.print("{}\n", valueJson(substance, owner, parameter, notes, table));
    } else if (options.csv) {
        printCsv(output, parameter, notes, table);
    } else {
        printAligned(output, ownerText(substance, owner), parameter, notes, table);
    }
    output.finish();
    return ExitDone;
}

} // namespace

void addGetCommand(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<GetOptions>();
    CLI::App* command = addCommand(app, action, "get", "Show the value of a parameter", options, runGet);
    command->add_option("SUBSTANCE", options->substance, "Substance, by name or number")
        ->required()
        ->check(notEmpty());
    command->add_option("PARAMETER", options->parameter, "Parameter, by name or number")
        ->required()
        ->check(notEmpty());
    addOwnerOptions(*command, options->owner);
    command->get_option("--phase")->expected(1);
    command->get_option("--change")->expected(1);
    auto* csv = command->add_flag("--csv", options->csv, "As CSV with a head line");
    command->add_flag("--json", options->json, "As JSON")->excludes(csv);
    command->add_flag("--source", options->source,
        "Begin with a comment line: where the value comes from, and how accurate it is; JSON always tells");
}

} // namespace tool
