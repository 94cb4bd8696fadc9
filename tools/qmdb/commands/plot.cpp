#include "commands/commands.h"

#include "annotations/Annotations.h"
#include "commands/misreadings.h"
#include "commands/owners.h"
#include "commands/unitOptions.h"
#include "common/characters.h"
#include "output/gnuplot.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>

namespace tool {

namespace {

struct PlotOptions {
    Location location;
    std::vector<std::string> names; ///< substances, and last the parameter
    OwnerOptions owner;
    std::vector<std::string> units;
    std::string file;
};

/// One value in the picture.
struct Drawn {
    Substance substance;
    Owner owner;
    Parameter parameter;
    Table table;
    ParameterNotes notes;
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

void requireOneKind(const std::vector<Drawn>& values)
{
    const Parameter& first = values.front().parameter;
    for (const Drawn& drawn : values) {
        if (drawn.table.arguments == 0) {
            throw Failure("{} of {} is a constant: there is no curve to draw", drawn.parameter.name,
                ownerText(drawn.substance, drawn.owner));
        }
        if (argumentNames(drawn.parameter.type) != argumentNames(first.type)) {
            throw Failure("{} of {} is a {}, of {} a {}: they do not fit into one picture", first.name,
                ownerText(values.front().substance, values.front().owner), typeText(first.type),
                ownerText(drawn.substance, drawn.owner), typeText(drawn.parameter.type));
        }
    }
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

/// What tells a value from the others in the picture: its substance, its phase, both or nothing.
std::string distinction(const std::vector<Drawn>& values, const Drawn& drawn)
{
    std::set<long> substances;
    std::set<std::string> owners;
    for (const Drawn& other : values) {
        substances.insert(other.substance.id);
        owners.insert(other.owner.name);
    }
    const std::string substance = substances.size() > 1 ? drawn.substance.name : "";
    const std::string owner = owners.size() > 1 ? drawn.owner.name : "";
    return substance + (substance.empty() || owner.empty() ? "" : ", ") + owner;
}

/// The title of the curve of one component; the first argument of a family is part of it.
std::string curveTitle(
    const std::string& distinction, const Drawn& drawn, const Point& point, std::size_t component)
{
    std::vector<std::string> parts;
    if (!distinction.empty()) {
        parts.push_back(distinction);
    }
    if (drawn.table.components > 1) {
        parts.emplace_back(componentName(drawn.table.components, component));
    }
    if (drawn.table.arguments > 1) {
        const ArgumentNotes& first = drawn.notes.arguments.front();
        parts.push_back(fmt::format("{} = {}{}{}", printable(first.symbol), point.arguments[0],
            first.units.empty() ? "" : " ", printable(first.units)));
    }
    return fmt::format("{}", fmt::join(parts, ", "));
}

/// Appends the curves of one component: one, or one for each first argument.
void appendCurves(
    std::vector<Curve>& curves, const std::string& distinction, const Drawn& drawn, std::size_t component)
{
    const Point* previous = nullptr;
    const bool family = drawn.table.arguments > 1;
    for (const Point& point : drawn.table.points) {
        if (!previous || (family && point.arguments[0] != previous->arguments[0])) {
            curves.push_back({ curveTitle(distinction, drawn, point, component), component, {} });
        }
        curves.back().dots.push_back({ point.arguments[family ? 1 : 0], point.components[component] });
        previous = &point;
    }
}

std::string withUnits(const Parameter& parameter)
{
    return parameter.units.empty() ? parameter.name : fmt::format("{}, {}", parameter.name, parameter.units);
}

/// What all values have in common.
std::string titleOf(const std::vector<Drawn>& values)
{
    const Drawn& first = values.front();
    const bool oneSubstance = std::ranges::all_of(
        values, [&](const Drawn& drawn) { return drawn.substance.id == first.substance.id; });
    const bool oneOwner = std::ranges::all_of(
        values, [&](const Drawn& drawn) { return drawn.owner.name == first.owner.name; });
    if (oneSubstance) {
        return oneOwner ? ownerText(first.substance, first.owner) : first.substance.name;
    }
    return oneOwner && !first.owner.name.empty() ? first.owner.name : first.parameter.name;
}

Picture pictureOf(const std::vector<Drawn>& values)
{
    const Drawn& first = values.front();
    Picture picture;
    picture.title = titleOf(values);
    picture.xLabel = printable(first.notes.arguments.back().label());
    picture.yLabel = withUnits(first.parameter);
    picture.family = values.size() == 1 && first.table.arguments > 1 && first.table.components == 1;
    for (const Drawn& drawn : values) {
        for (std::size_t component = 0; component < drawn.table.components; ++component) {
            appendCurves(picture.curves, distinction(values, drawn), drawn, component);
        }
    }
    return picture;
}

int runPlot(const PlotOptions& options)
{
    const Database database(options.location);
    const std::vector<Drawn> values = readValues(database, options);
    requireOneKind(values);
    std::ranges::for_each(values, reportGaps);
    draw(pictureOf(values), options.file);
    return ExitDone;
}

} // namespace

void addPlotCommand(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<PlotOptions>();
    CLI::App* command = addCommand(app, action, "plot", "Draw the curves of a parameter", options, runPlot);
    command
        ->add_option("NAME", options->names,
            "What to compare, SUBSTANCE or SUBSTANCE:PHASE, and last the parameter, by name or number")
        ->check(notEmpty())
        ->required()
        ->expected(-2); // two or more
    addOwnerOptions(*command, options->owner);
    addUnitsOption(*command, options->units);
    command
        ->add_option("-o,--output", options->file,
            "Picture file with the extension .svg, .png or .pdf; without it the terminal")
        ->type_name("FILE")
        ->check(notEmpty());
}

} // namespace tool
