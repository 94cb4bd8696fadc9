#include "commands/commands.h"

#include "common/names.h"
#include "output/Output.h"
#include "output/Progress.h"
#include "output/listJson.h"
#include "output/listTree.h"

#include <optional>

namespace tool {

namespace {

struct ListOptions {
    Location location;
    std::string substance;
    bool json = false;
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

ListedParameter listParameter(
    const Database& database, const Substance& substance, const Owner& owner, const Parameter& parameter)
{
    ListedParameter listed { parameter, 0, {}, {} };
    try {
        const Table table = database.value(substance.id, owner, parameter.id);
        listed.points = table.points.size();
        listed.ranges = rangesOf(table);
    } catch (const UnreadableValue& failure) {
        listed.error = failure.what();
    }
    return listed;
}

ListedSubstance listSubstance(const Database& database, const Substance& substance)
{
    ListedSubstance listed { substance, {} };
    for (const Owner& owner : database.owners(substance.id)) {
        listed.owners.push_back({ owner, {} });
        for (const Parameter& parameter : database.parameters(substance.id, owner)) {
            listed.owners.back().parameters.push_back(listParameter(database, substance, owner, parameter));
        }
    }
    return listed;
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
    const Database database(options.location);
    const std::vector<Substance> all = database.substances();
    std::vector<Substance> wanted = all;
    if (!options.substance.empty()) {
        wanted = { choose(all, options.substance, "substance") };
    }
    std::vector<ListedSubstance> listed;
    {
        Progress progress(wanted.size());
        for (const Substance& substance : wanted) {
            listed.push_back(listSubstance(database, substance));
            progress.step();
        }
    }
    Output output;
    if (options.json) {
        output.print("{}\n", listJson(listed));
    } else {
        printTree(output, listed, all);
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
    command->add_option("SUBSTANCE", options->substance, "Only this substance, by name or number")
        ->check(notEmpty());
    command->add_flag("--json", options->json, "As JSON");
}

} // namespace tool
