#include "commands/commands.h"

#include "annotations/Annotations.h"
#include "commands/owners.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/listBrief.h"
#include "output/listJson.h"
#include "output/listTree.h"

#include <algorithm>
#include <optional>

namespace tool {

namespace {

struct ListOptions {
    Location location;
    std::string substance;
    bool json = false;
    bool sources = false;
    bool comments = false;
    bool brief = false;
    bool noValues = false;
};

std::vector<Range> rangesOf(const Table& table)
{
    std::vector<Range> ranges;
    for (std::size_t i = 0; i < table.arguments && !table.points.empty(); ++i) {
        const auto argument = [i](const Point& point) { return point.arguments[i]; };
        const auto [least, most] = std::ranges::minmax(table.points, {}, argument);
        ranges.push_back({ argument(least), argument(most) });
    }
    return ranges;
}

/// What a listing reads from.
struct Place {
    const Database& database;
    const Annotations& annotations;
    bool withComments = false; ///< of data files
    bool withSources = false; ///< which stand in files of their own
    bool withValues = true;
};

ListedParameter listParameter(
    const Place& place, const Substance& substance, const Owner& owner, const Parameter& parameter)
{
    const ParameterNotes notes = place.withSources || place.withComments
        ? place.annotations.parameter(substance.id, owner, parameter)
        : place.annotations.describe(parameter);
    ListedParameter listed { parameter, notes, place.withValues, 0, {}, {}, {} };
    if (place.withComments) {
        listed.comments = place.annotations.comments(notes.dataFile);
    }
    if (!place.withValues) {
        return listed;
    }
    try {
        const Table table = place.database.value(substance.id, owner, parameter.id);
        listed.points = table.points.size();
        listed.ranges = rangesOf(table);
    } catch (const UnreadableValue& failure) {
        listed.error = failure.what();
    }
    return listed;
}

ListedSubstance listSubstance(const Place& place, const Substance& substance)
{
    ListedSubstance listed { substance, place.annotations.substance(substance.id), {} };
    for (const Owner& owner : place.database.owners(substance.id)) {
        listed.owners.push_back({ owner, {} });
        for (const Parameter& parameter : place.database.parameters(substance.id, owner)) {
            listed.owners.back().parameters.push_back(listParameter(place, substance, owner, parameter));
        }
    }
    return listed;
}

BriefSubstance briefSubstance(const Place& place, const Substance& substance)
{
    BriefSubstance brief { substance, place.annotations.substance(substance.id), {}, 0 };
    for (const Owner& owner : place.database.owners(substance.id)) {
        if (owner.kind == Owner::Kind::Phase) {
            brief.phases.push_back(owner);
        }
        brief.values += place.database.parameters(substance.id, owner).size();
    }
    return brief;
}

int runBrief(const ListOptions& options, const Place& place, const std::vector<Substance>& wanted)
{
    std::vector<BriefSubstance> listed;
    std::ranges::transform(wanted, std::back_inserter(listed),
        [&](const Substance& substance) { return briefSubstance(place, substance); });
    Output output;
    options.json ? output.print("{}\n", briefJson(listed)) : printBrief(output, listed);
    output.finish();
    return ExitDone;
}

bool isWhole(const ListedSubstance& substance)
{
    return std::ranges::all_of(substance.owners, [](const ListedOwner& owner) {
        return std::ranges::all_of(
            owner.parameters, [](const auto& parameter) { return parameter.error.empty(); });
    });
}

int runList(const ListOptions& options)
{
    Annotations annotations(options.location.directory);
    annotations.readAhead();
    const Database database(options.location);
    const std::vector<Substance> all = database.substances();
    std::vector<Substance> wanted = all;
    if (!options.substance.empty()) {
        wanted = { Resolver(database, annotations).substance(options.substance) };
    }
    if (options.brief) {
        return runBrief(options, { database, annotations }, wanted);
    }
    const Place place { database, annotations, options.comments, options.json || options.sources,
        !options.noValues };
    std::vector<ListedSubstance> listed;
    {
        Progress progress(wanted.size());
        for (const Substance& substance : wanted) {
            listed.push_back(listSubstance(place, substance));
            progress.step();
        }
    }
    Output output;
    if (options.json) {
        output.print("{}\n", listJson(listed));
    } else {
        printTree(output, listed, all, options.sources ? TreeColumns::Sources : TreeColumns::Values);
    }
    output.finish();
    return std::ranges::all_of(listed, isWhole) ? ExitDone : ExitFindings;
}

} // namespace

void addListCommand(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<ListOptions>();
    CLI::App* command = addCommand(app, action, "list",
        "Show substances with their phases, phase changes and parameters", options, runList);
    command
        ->add_option("SUBSTANCE", options->substance,
            "Only this substance, by name, number, formula, alias or CAS number")
        ->check(notEmpty());
    auto* json = command->add_flag("--json", options->json, "As JSON");
    auto* sources = command->add_flag(
        "--sources", options->sources, "Where each value comes from, and how accurate it is");
    sources->excludes(json);
    command
        ->add_flag("--brief", options->brief,
            "A line for each substance: number, name, formula, phases and how many values it has")
        ->excludes(sources);
    command->add_flag("--comments", options->comments, "With --json: the comments of the data files as well")
        ->needs(json);
    command->add_flag("--no-values", options->noValues,
        "Do not read the values: without their points and ranges, in a large database twice as fast");
    command->footer("Examples:\n"
                    "  qmdb list materials --brief\n"
                    "  qmdb list materials Water\n"
                    "  qmdb list materials Zinc --sources");
}

} // namespace tool
