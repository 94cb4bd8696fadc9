#include "commands/atOptions.h"

#include "commands/subcommand.h"
#include "common/characters.h"
#include "common/names.h"
#include "common/numbers.h"

#include <algorithm>
#include <cmath>
#include <fmt/ranges.h>

namespace tool {

namespace {

constexpr double mostPoints = 1e6;

std::vector<std::string> split(std::string_view text, char separator)
{
    std::vector<std::string> parts;
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = text.find(separator);
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return parts;
}

/// True for "350K" and "76.85degC".
bool hasUnits(const std::string& text)
{
    const std::size_t end = text.find_first_not_of("+-.0123456789");
    return end != 0 && text.find_first_not_of("+-.0123456789eE") != std::string::npos
        && asFiniteNumber(text.substr(0, end));
}

double numberOf(const std::string& text, const std::string& whole)
{
    const auto number = asFiniteNumber(text);
    if (!number) {
        throw Failure("--at {}: {} is not a number; {}", shown(whole), shown(text),
            hasUnits(text) ? "units go into an option of their own, as in --units T=degC"
                           : "write T=350 or T=FROM:TO:STEP");
    }
    return *number;
}

/// From, to and step, with both ends as far as the steps meet them.
std::vector<double> series(double from, double to, double step, const std::string& whole)
{
    constexpr double tolerance = 1e-9; // of a step
    const double steps = std::floor((to - from) / step + tolerance);
    if (!(steps >= 0) || step == 0) {
        throw Failure("--at {}: the step does not lead from {} to {}", shown(whole), from, to);
    }
    if (steps >= mostPoints) {
        throw Failure("--at {}: these are more than {} points", shown(whole), mostPoints);
    }
    std::vector<double> numbers;
    for (double i = 0; i <= steps; ++i) {
        numbers.push_back(roundedTo(from + i * step, std::max(std::abs(from), std::abs(to))));
    }
    return numbers;
}

std::vector<double> numbersOf(const std::string& text, const std::string& whole)
{
    constexpr std::size_t partsOfSeries = 3;
    const std::vector<std::string> parts = split(text, ':');
    std::vector<double> numbers;
    for (const std::string& part : parts) {
        numbers.push_back(numberOf(part, whole));
    }
    if (parts.size() == partsOfSeries) {
        return series(numbers[0], numbers[1], numbers[2], whole);
    }
    if (parts.size() > 1) {
        throw Failure("--at {}: write a series as FROM:TO:STEP", shown(whole));
    }
    return numbers;
}

/// Each number of the first with each of the second.
std::vector<std::vector<double>> grid(const std::vector<const std::vector<double>*>& axes)
{
    std::vector<std::vector<double>> points(1);
    for (const auto* axis : axes) {
        std::vector<std::vector<double>> longer;
        for (const auto& point : points) {
            for (const double number : *axis) {
                longer.push_back(point);
                longer.back().push_back(number);
            }
        }
        points = std::move(longer);
    }
    return points;
}

std::string withUnits(double number, const std::string& units)
{
    return fmt::format("{}{}{}", numberText(number), units.empty() ? "" : " ", printable(units));
}

} // namespace

void addAtOption(CLI::App& command, std::vector<std::string>& at)
{
    command
        .add_option("--at", at,
            "Where to read a table, between its points, too: \"T=350\", \"T=350:450:10\", \"P=1e6,T=350\"")
        ->type_name("ARGUMENT=NUMBER")
        ->allow_extra_args(false)
        ->check(notEmpty());
}

AtPoints::AtPoints(const std::vector<std::string>& texts)
{
    for (const std::string& whole : texts) {
        for (const std::string& text : split(whole, ',')) {
            const std::size_t sign = text.find('=');
            if (sign == std::string::npos || sign == 0) {
                throw Failure("--at {}: write ARGUMENT=NUMBER, as in T=350", shown(whole));
            }
            Named named { text.substr(0, sign), numbersOf(text.substr(sign + 1), whole) };
            if (std::ranges::any_of(named_, [&](const Named& other) { return other.name == named.name; })) {
                throw Failure("--at gives {} twice", shown(named.name));
            }
            named_.push_back(std::move(named));
        }
    }
}

void AtPoints::requireSingle() const
{
    for (const Named& named : named_) {
        if (named.numbers.size() != 1) {
            throw Failure("--at {}: one number is wanted here, not a series", shown(named.name));
        }
    }
}

const AtPoints::Named* AtPoints::find(
    const Parameter& parameter, const ParameterNotes& notes, std::size_t argument) const
{
    const auto found = std::ranges::find_if(
        named_, [&](const Named& named) { return findArgument(parameter, notes, named.name) == argument; });
    return found == named_.end() ? nullptr : &*found;
}

std::vector<std::vector<double>> AtPoints::points(
    const Parameter& parameter, const ParameterNotes& notes) const
{
    std::vector<const std::vector<double>*> axes;
    for (const Named& named : named_) {
        if (!findArgument(parameter, notes, named.name)) {
            throw Failure(
                "{} has no argument {}; give {}", parameter.name, shown(named.name), argumentsText(notes));
        }
    }
    for (std::size_t i = 0; i < notes.arguments.size(); ++i) {
        const Named* named = find(parameter, notes, i);
        if (!named) {
            throw Failure("{} is a {}; give {}, as in --at P=1e6,T=350", parameter.name,
                typeText(parameter.type), argumentsText(notes));
        }
        axes.push_back(&named->numbers);
    }
    return grid(axes);
}

std::optional<std::vector<double>> AtPoints::point(
    const Parameter& parameter, const ParameterNotes& notes, std::vector<bool>& used) const
{
    std::vector<double> point;
    for (std::size_t i = 0; i < notes.arguments.size(); ++i) {
        const Named* named = find(parameter, notes, i);
        if (named) {
            used[static_cast<std::size_t>(named - named_.data())] = true;
            point.push_back(named->numbers.front());
        }
    }
    return point.size() == notes.arguments.size() ? std::optional(point) : std::nullopt;
}

std::string AtPoints::text(const std::vector<std::string>& units) const
{
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < named_.size(); ++i) {
        texts.push_back(fmt::format(
            "{} = {}", printable(named_[i].name), withUnits(named_[i].numbers.front(), units[i])));
    }
    return fmt::format("{}", fmt::join(texts, ", "));
}

std::variant<Point, Outside> readAt(const Interpolation& interpolation, const ShownUnits& units,
    const std::vector<double>& point, Method method)
{
    std::vector<double> arguments;
    for (std::size_t i = 0; i < point.size(); ++i) {
        arguments.push_back(units.arguments[i].inverse()(point[i]));
    }
    auto result = interpolation.at(arguments, method);
    if (auto* outside = std::get_if<Outside>(&result)) {
        const Conversion& conversion = units.arguments[outside->argument];
        outside->wanted = point[outside->argument];
        outside->range = { conversion(outside->range.least), conversion(outside->range.most) };
        if (outside->first) {
            outside->first = units.arguments.front()(*outside->first);
        }
        return result;
    }
    Table table { point.size(), std::get<Point>(result).components.size(), { std::get<Point>(result) } };
    units.convert(table);
    if (method == Method::Linear) {
        std::ranges::copy(point, table.points.front().arguments.begin());
    }
    return table.points.front();
}

std::string outsideText(const Outside& outside, const ParameterNotes& notes)
{
    const ArgumentNotes& argument = notes.arguments[outside.argument];
    const std::string where = outside.first
        ? fmt::format(" at {} = {}", printable(notes.arguments.front().symbol),
            withUnits(*outside.first, notes.arguments.front().units))
        : "";
    return fmt::format("{} = {} is outside the table, which reaches from {} to {}{}",
        printable(argument.symbol), withUnits(outside.wanted, argument.units),
        numberText(outside.range.least), withUnits(outside.range.most, argument.units), where);
}

} // namespace tool
