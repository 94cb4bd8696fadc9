#include "commands/commands.h"

#include "annotations/Annotations.h"
#include "commands/misreadings.h"
#include "commands/owners.h"
#include "commands/plotOptions.h"
#include "commands/plotPicture.h"
#include "commands/unitOptions.h"
#include "output/Output.h"
#include "output/gnuplot.h"
#include "output/gnuplotScript.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace tool {

namespace {

struct PlotOptions {
    Location location;
    std::vector<std::string> names; ///< substances, and last the parameter
    OwnerOptions owner;
    std::vector<std::string> units;
    LookOptions look;
    bool script = false;
    std::string file;
};

/// The values to draw: each substance with each phase or change.
std::vector<Drawn> readValues(const Database& database, const PlotOptions& options)
{
    const Annotations annotations(options.location.directory);
    const Resolver resolver(database, annotations);
    const UnitChoice units(options.units);
    std::vector<Drawn> values;
    for (auto name = options.names.begin(); name + 1 != options.names.end(); ++name) {
        const auto [substance, owners] = resolver.material(*name, options.owner);
        for (const Owner& owner : owners) {
            Parameter parameter = resolver.parameter(substance, owner, options.names.back());
            ParameterNotes notes = annotations.parameter(substance.id, owner, parameter);
            warnOfMisreadings(annotations, notes.dataFile, substance, owner, parameter);
            Table table = database.value(substance.id, owner, parameter.id);
            units.choose(parameter, notes).convert(table);
            values.push_back({ substance, owner, parameter, table, notes });
        }
    }
    units.requireUsed();
    return values;
}

bool isFinite(const Table& table, const Point& point)
{
    return std::ranges::all_of(numbersOf(table, point), [](double number) { return std::isfinite(number); });
}

/// Tells of points that no picture can show.
void reportGaps(const Drawn& drawn)
{
    const auto drawable = [&](const Point& point) { return isFinite(drawn.table, point); };
    const auto& points = drawn.table.points;
    const auto gaps = std::ranges::count_if(points, std::not_fn(drawable));
    const std::string what
        = fmt::format("{} of {}", drawn.parameter.name, ownerText(drawn.substance, drawn.owner));
    if (std::ranges::none_of(points, drawable)) {
        throw Failure("{} has no point with finite numbers: there is no curve to draw", what);
    }
    if (gaps > 0) {
        fmt::print(stderr,
            "qmdb: note: {}: {} of {} points have numbers that are not finite and leave gaps\n", what, gaps,
            points.size());
    }
}

int runPlot(const PlotOptions& options)
{
    const Database database(options.location);
    const std::vector<Drawn> values = readValues(database, options);
    Picture picture = pictureOf(values, options.location.language);
    std::ranges::for_each(values, reportGaps);
    applyLook(picture, options.look);
    if (options.script) {
        Output output;
        output.print("{}", gnuplotProgram(picture, options.file));
        output.finish();
    } else {
        draw(picture, options.file);
    }
    return ExitDone;
}

} // namespace

void addPlotCommand(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<PlotOptions>();
    CLI::App* command = addCommand(app, action, "plot", "Draw the curves of a parameter", options, runPlot);
    command
        ->add_option("MATERIAL", options->names,
            "What to compare, SUBSTANCE or SUBSTANCE:PHASE, and last the parameter, by name or number")
        ->check(notEmpty())
        ->required()
        ->expected(-2); // two or more
    addOwnerOptions(*command, options->owner);
    addUnitsOption(*command, options->units);
    addLookOptions(*command, options->look);
    addLogOption(*command, options->look.logarithmic, options->location.logDirectory);
    command->add_flag("--script", options->script,
        "Print the gnuplot program with its data instead of drawing, to go on from");
    command
        ->add_option("-o,--output", options->file,
            "Picture file with the extension .svg, .png or .pdf; without it the terminal")
        ->type_name("FILE")
        ->check(notEmpty());
    command->footer("Examples:\n"
                    "  qmdb plot materials Water Density --phase Liquid\n"
                    "  qmdb plot materials Copper Iron \"Thermal conductivity\" --phase Solid -o metals.svg\n"
                    "  qmdb plot materials Water:Steam \"Dynamic viscosity\" --units T=degC -o steam.pdf");
}

} // namespace tool
