#include "database/interpolation.h"

#include "common/failure.h"
#include "common/numbers.h"

#include <algorithm>
#include <cmath>

namespace tool {

namespace {

/// Throws Failure unless each number is greater than the one before.
template <class Items, class Number>
void requireIncreasing(const Items& items, Number number, std::string_view which)
{
    const auto notLess
        = [&](const auto& before, const auto& after) { return !(number(before) < number(after)); };
    const auto found = std::ranges::adjacent_find(items, notLess);
    if (found != items.end()) {
        throw Failure("the table cannot be read between its points: {} do not increase, {} comes after {}",
            which, numberText(number(*std::next(found))), numberText(number(*found)));
    }
}

/// The neighbours of a number among increasing ones that reach it; both are the same at a point.
template <class Items, class Number>
auto around(const Items& items, Number number, double wanted)
{
    const auto high = std::ranges::lower_bound(items, wanted, {}, number);
    return std::pair(number(*high) == wanted ? high : std::prev(high), high);
}

double part(double low, double wanted, double high)
{
    return (wanted - low) / (high - low);
}

Point mixed(const Point& low, const Point& high, double part)
{
    Point point;
    for (std::size_t i = 0; i < point.components.size(); ++i) {
        const double from = low.components[i];
        const double to = high.components[i];
        point.components[i] = roundedTo(from + (to - from) * part, std::max(std::abs(from), std::abs(to)));
    }
    return point;
}

bool reaches(const Range& range, double wanted)
{
    return wanted >= range.least && wanted <= range.most;
}

} // namespace

Interpolation::Interpolation(const Table& table)
    : last_(table.arguments - 1)
{
    const Run all(table.points);
    if (all.empty()) {
        throw Failure("the table has no points");
    }
    for (std::size_t i = 0; i < table.subtables.size(); ++i) {
        const std::size_t end = i + 1 < table.subtables.size() ? table.subtables[i + 1] : all.size();
        runs_.push_back(all.subspan(table.subtables[i], end - table.subtables[i]));
    }
    if (runs_.empty()) {
        runs_ = { all };
    }
    requireIncreasing(
        runs_, [](const Run& run) { return run.front().arguments[0]; }, "the first arguments");
    for (const Run& run : runs_) {
        requireIncreasing(
            run, [this](const Point& point) { return last(point); },
            last_ == 0 ? "the arguments" : "the second arguments");
    }
}

std::variant<Point, Outside> Interpolation::at(std::span<const double> arguments, Method method) const
{
    if (last_ == 0) {
        return along(runs_.front(), arguments[0], method);
    }
    const auto first = [](const Run& run) { return run.front().arguments[0]; };
    const Range range { first(runs_.front()), first(runs_.back()) };
    if (!reaches(range, arguments[0])) {
        return Outside { 0, arguments[0], range, {} };
    }
    const auto [low, high] = around(runs_, first, arguments[0]);
    if (low == high || method == Method::Linear) {
        return low == high ? along(*low, arguments[1], method) : between(*low, *high, arguments);
    }
    const bool isLow = arguments[0] - first(*low) <= first(*high) - arguments[0];
    return along(isLow ? *low : *high, arguments[1], method);
}

std::variant<Point, Outside> Interpolation::between(
    Run low, Run high, std::span<const double> arguments) const
{
    const auto fromLow = along(low, arguments[1], Method::Linear);
    const auto fromHigh = along(high, arguments[1], Method::Linear);
    for (const auto& result : { fromLow, fromHigh }) {
        if (std::holds_alternative<Outside>(result)) {
            return result;
        }
    }
    Point point = mixed(std::get<Point>(fromLow), std::get<Point>(fromHigh),
        part(low.front().arguments[0], arguments[0], high.front().arguments[0]));
    point.arguments = { arguments[0], arguments[1] };
    return point;
}

std::variant<Point, Outside> Interpolation::along(Run run, double wanted, Method method) const
{
    const Range range { last(run.front()), last(run.back()) };
    if (!reaches(range, wanted)) {
        const bool subtable = last_ > 0;
        return Outside { last_, wanted, range,
            subtable ? std::optional(run.front().arguments[0]) : std::nullopt };
    }
    const auto [low, high] = around(
        run, [this](const Point& point) { return last(point); }, wanted);
    if (low == high) {
        return *low;
    }
    if (method == Method::Nearest) {
        return wanted - last(*low) <= last(*high) - wanted ? *low : *high;
    }
    Point point = mixed(*low, *high, part(last(*low), wanted, last(*high)));
    point.arguments = low->arguments;
    point.arguments[last_] = wanted;
    return point;
}

} // namespace tool
