#include "commands/commands.h"

#include "annotations/Annotations.h"
#include "commands/atOptions.h"
#include "commands/nameSearch.h"
#include "commands/owners.h"
#include "common/characters.h"
#include "output/Progress.h"
#include "output/foundValues.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <optional>

namespace tool {

namespace {

struct FindOptions {
    Location location;
    std::string text;
    std::vector<std::string> states;
    std::vector<std::string> at;
    std::optional<double> above;
    std::optional<double> below;
    std::vector<double> between;
    std::vector<std::string> units;
    bool csv = false;
    bool json = false;

    Form form() const { return json ? Form::Json : csv ? Form::Csv : Form::Aligned; }
    bool asksForValues() const
    {
        return !states.empty() || !at.empty() || above || below || !between.empty() || !units.empty();
    }
    bool takes(double value) const
    {
        return !std::isnan(value) && (!above || value > *above) && (!below || value < *below)
            && (between.empty() || (value >= between[0] && value <= between[1]));
    }
    bool takes(const Owner& owner) const
    {
        return states.empty()
            || (owner.kind == Owner::Kind::Phase
                && std::ranges::find(states, stateText(owner.state)) != states.end());
    }
};

/// Something that has the parameter.
struct Holder {
    Substance substance;
    Owner owner;
    Parameter parameter;
};

/// Looks for the values of one parameter at one point.
class ValueSearch {
public:
    ValueSearch(const FindOptions& options, const Database& database, const Annotations& annotations)
        : options_(options)
        , database_(database)
        , annotations_(annotations)
        , at_(options.at)
        , units_(options.units)
        , named_(at_.count())
        , argumentUnits_(at_.count())
    {
        at_.requireSingle();
    }

    /// False when some value cannot be read.
    bool run()
    {
        std::vector<Holder> holders = holdersOfParameter();
        parameter_ = holders.front().parameter;
        std::erase_if(holders, [this](const Holder& holder) { return !options_.takes(holder.owner); });
        {
            Progress progress(holders.size());
            for (const Holder& holder : holders) {
                look(holder);
                progress.step();
            }
        }
        requireNamed();
        std::ranges::stable_sort(found_, std::ranges::greater(), &FoundValue::value);
        print();
        return whole_;
    }

private:
    /// All that have the parameter that the user names; not one is no parameter of the database.
    std::vector<Holder> holdersOfParameter() const
    {
        std::vector<Holder> all;
        std::map<long, Parameter> parameters;
        for (const Substance& substance : database_.substances()) {
            for (const Owner& owner : database_.owners(substance.id)) {
                for (const Parameter& parameter : database_.parameters(substance.id, owner)) {
                    parameters.try_emplace(parameter.id, parameter);
                    all.push_back({ substance, owner, parameter });
                }
            }
        }
        std::vector<Parameter> choices;
        std::ranges::transform(
            parameters, std::back_inserter(choices), [](const auto& entry) { return entry.second; });
        const long wanted
            = Resolver(database_, annotations_).parameter(choices, options_.text, "parameter").id;
        std::erase_if(all, [wanted](const Holder& holder) { return holder.parameter.id != wanted; });
        return all;
    }

    void look(const Holder& holder)
    {
        try {
            read(holder);
        } catch (const WrongUnits&) {
            throw; // they are wrong for all
        } catch (const Failure& failure) {
            fmt::print(stderr, "qmdb: warning: {} of {} is left out: {}\n", holder.parameter.name,
                ownerText(holder.substance, holder.owner), failure.what());
            whole_ = false;
        }
    }

    void read(const Holder& holder)
    {
        Table table = database_.value(holder.substance.id, holder.owner, holder.parameter.id);
        Parameter shown = holder.parameter;
        ParameterNotes notes = annotations_.describe(shown);
        const ShownUnits units = units_.choose(shown, notes);
        parameter_ = shown;
        if (table.arguments == 0) {
            units.convert(table);
            add(holder, table, table.points.front());
            return;
        }
        noteUnits(shown, notes);
        const auto point = at_.point(shown, notes, named_);
        if (!point) {
            ++withoutPoint_[argumentsText(notes)];
            return;
        }
        const auto result = readAt(Interpolation(table), units, *point, Method::Linear);
        if (std::holds_alternative<Outside>(result)) {
            ++outside_;
            return;
        }
        add(holder, table, std::get<Point>(result));
    }

    void noteUnits(const Parameter& shown, const ParameterNotes& notes)
    {
        for (std::size_t i = 0; i < at_.count(); ++i) {
            if (const auto argument = findArgument(shown, notes, at_.name(i))) {
                argumentUnits_[i] = notes.arguments[*argument].units;
            }
        }
    }

    void add(const Holder& holder, const Table& table, const Point& point)
    {
        for (std::size_t i = 0; i < table.components; ++i) {
            if (options_.takes(point.components[i])) {
                found_.push_back({ holder.substance, holder.owner, componentName(table.components, i),
                    holder.parameter.type, point.components[i] });
            }
        }
    }

    /// Throws Failure for a name in --at that is an argument of no table. Values that do not depend on the
    /// pressure are found at every pressure.
    void requireNamed() const
    {
        const bool tables = outside_ > 0 || !withoutPoint_.empty()
            || std::ranges::any_of(
                found_, [](const auto& found) { return found.type != PARAM_TYPE_CONSTANT; });
        for (std::size_t i = 0; i < named_.size(); ++i) {
            if (tables && !named_[i] && !isUsualArgument(at_.name(i))) {
                throw Failure("no table of {} has an argument {}{}{}", parameter_.name, shown(at_.name(i)),
                    withoutPoint_.empty() ? "" : "; give ",
                    withoutPoint_.empty() ? "" : withoutPoint_.begin()->first);
            }
        }
        units_.requireUsed();
    }

    void note(std::size_t count, std::string_view what) const
    {
        if (count > 0) {
            fmt::print(stderr, "qmdb: note: {} more {} {} {}\n", count, count == 1 ? "has" : "have",
                parameter_.name, what);
        }
    }

    void print() const
    {
        Output output;
        const std::string at = at_.text(argumentUnits_);
        printFound(output, options_.form(), parameter_, at, found_);
        output.finish();
        note(outside_, fmt::format("in a table that does not reach {}", at));
        for (const auto& [arguments, count] : withoutPoint_) {
            note(count, fmt::format("in a table that needs {} in --at", arguments));
        }
    }

    const FindOptions& options_;
    const Database& database_;
    const Annotations& annotations_;
    AtPoints at_;
    UnitChoice units_;
    std::vector<bool> named_; ///< which names of --at are arguments of some table
    std::vector<std::string> argumentUnits_; ///< of these
    Parameter parameter_; ///< as it is shown
    std::vector<FoundValue> found_;
    std::size_t outside_ = 0;
    std::map<std::string, std::size_t> withoutPoint_; ///< by the arguments that the tables need
    bool whole_ = true;
};

void requireNumber(std::string_view option, double number)
{
    if (std::isnan(number)) {
        throw Failure("{} takes a number, and \"nan\" is none", option);
    }
}

/// Limits between which no number lies find nothing, and look like an answer.
void requireLimits(const FindOptions& options)
{
    requireNumber("--above", options.above.value_or(0));
    requireNumber("--below", options.below.value_or(0));
    for (const double limit : options.between) {
        requireNumber("--between", limit);
    }
    if (!options.between.empty() && options.between[0] > options.between[1]) {
        throw Failure("--between {0} {1}: write the lower limit first, as in --between {1} {0}",
            options.between[0], options.between[1]);
    }
    if (options.above && options.below && *options.above >= *options.below) {
        throw Failure("no number is above {} and below {}", *options.above, *options.below);
    }
}

int runFind(const FindOptions& options)
{
    requireLimits(options);
    Annotations annotations(options.location.directory);
    if (!options.asksForValues()) {
        annotations.readAhead();
    }
    const Database database(options.location);
    if (options.asksForValues()) {
        return ValueSearch(options, database, annotations).run() ? ExitDone : ExitFindings;
    }
    const auto found = findNames(database, annotations, options.text);
    if (found.empty()) {
        throw Failure(
            "nothing in the database is called \"{}\", nor has such a formula, alias, CAS number or "
            "symbol\n\"qmdb list --brief\" shows what there is",
            options.text);
    }
    Output output;
    printFound(output, options.form(), found);
    output.finish();
    return ExitDone;
}

void addLimits(CLI::App& command, FindOptions& options)
{
    command.add_option("--above", options.above, "Only values greater than this")->type_name("NUMBER");
    command.add_option("--below", options.below, "Only values less than this")->type_name("NUMBER");
    command.add_option("--between", options.between, "Only values from the one to the other")
        ->type_name("NUMBER")
        ->expected(2);
}

} // namespace

void addFindCommand(CLI::App& app, Action& action)
{
    const auto options = std::make_shared<FindOptions>();
    CLI::App* command = addCommand(app, action, "find",
        "Find what goes by a name, or which materials have a parameter, and with what value", options,
        runFind);
    command
        ->add_option("TEXT", options->text,
            "Part of a name, or a formula, alias, CAS number or symbol; with any of the options below a "
            "parameter, by name, number or symbol")
        ->required()
        ->check(notEmpty());
    command->add_option("--state", options->states, "Only phases in this state")
        ->type_name("STATE")
        ->allow_extra_args(false)
        ->check(CLI::IsMember({ "solid", "liquid", "gas" }));
    addAtOption(*command, options->at);
    addLimits(*command, *options);
    addUnitsOption(*command, options->units);
    auto* csv = command->add_flag("--csv", options->csv, "As CSV with a head line");
    command->add_flag("--json", options->json, "As JSON")->excludes(csv);
    command->footer("Examples:\n"
                    "  qmdb find materials copper\n"
                    "  qmdb find materials \"Thermal conductivity\" --state solid --at T=300 --above 100\n"
                    "  qmdb find materials rho --units g/cm3 --between 7 9");
}

} // namespace tool
