#include "comparison/compare.h"

#include "common/failure.h"
#include "common/names.h"
#include "common/numbers.h"
#include "database/flatTable.h"

#include <algorithm>
#include <cmath>
#include <fmt/ranges.h>
#include <map>
#include <span>

namespace tool {

namespace {

/// Indexes of what is the same in both; none where only one has it.
struct Pair {
    std::optional<std::size_t> one;
    std::optional<std::size_t> other;
};

long idOf(const writing::NewDescription& description)
{
    return *description.id;
}

template <class Named>
long idOf(const Named& named)
{
    return named.id;
}

/// Pairs of two lists, those of the first in their order, then what only the second has.
template <class Named>
std::vector<Pair> pairsOf(const std::vector<Named>& one, const std::vector<Named>& other)
{
    std::vector<Pair> pairs(one.size());
    std::vector<bool> taken(other.size());
    std::multimap<std::pair<long, std::string>, std::size_t> places; // one look-up for each of three rules
    const auto pass = [&](auto keyOf) {
        places.clear();
        for (std::size_t i = 0; i < other.size(); ++i) {
            if (!taken[i]) {
                places.emplace(keyOf(other[i]), i);
            }
        }
        for (std::size_t i = 0; i < one.size(); ++i) {
            const auto found = pairs[i].other ? places.end() : places.find(keyOf(one[i]));
            if (found != places.end()) {
                pairs[i].other = found->second;
                taken[found->second] = true;
                places.erase(found);
            }
        }
    };
    pass([](const Named& named) { return std::pair { idOf(named), named.name }; });
    pass([](const Named& named) { return std::pair { 0L, named.name }; });
    pass([](const Named& named) { return std::pair { idOf(named), std::string() }; });
    for (std::size_t i = 0; i < one.size(); ++i) {
        pairs[i].one = i;
    }
    for (std::size_t i = 0; i < other.size(); ++i) {
        if (!taken[i]) {
            pairs.push_back({ std::nullopt, i });
        }
    }
    return pairs;
}

template <class Named>
const Named* pick(const std::vector<Named>& all, std::optional<std::size_t> index)
{
    return index ? &all[*index] : nullptr;
}

std::string nameIn(const std::vector<Substance>& all, long id)
{
    const auto found = std::ranges::find(all, id, &Substance::id);
    return found == all.end() ? std::to_string(id) : found->name;
}

std::string nameIn(const std::vector<Owner>& all, long id)
{
    const auto found = std::ranges::find(all, id, &Owner::id);
    return found == all.end() ? std::to_string(id) : found->name;
}

std::string pointText(const Parameter& parameter, const Table& table, const Point& point)
{
    const auto names = argumentNames(parameter.type);
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < table.arguments; ++i) {
        parts.push_back(
            fmt::format("{}={}", i < names.size() ? names[i] : "?", numberText(point.arguments[i])));
    }
    return fmt::format("{}", fmt::join(parts, ", "));
}

std::string componentsText(const Table& table, const Point& point)
{
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < table.components; ++i) {
        parts.push_back(numberText(point.components[i]));
    }
    return fmt::format("{}", fmt::join(parts, " "));
}

class Comparison {
public:
    Comparison(const Compared& one, const Compared& other, double tolerance)
        : one_(one)
        , other_(other)
        , tolerance_(tolerance)
    {
    }

    std::vector<Difference> run(const std::function<void()>& step)
    {
        for (const Pair& pair : pairsOf(one_.descriptions, other_.descriptions)) {
            compareDescriptions(pick(one_.descriptions, pair.one), pick(other_.descriptions, pair.other));
        }
        for (const Pair& pair : pairsOf(one_.substances, other_.substances)) {
            compareSubstances(pick(one_.substances, pair.one), pick(other_.substances, pair.other));
            step();
        }
        return std::move(differences_);
    }

private:
    using Texts = std::vector<std::pair<std::string, std::string>>;

    /// True when both have it; else tells which has it.
    template <class Named>
    bool areBoth(const std::string& kind, const Named* one, const Named* other, const std::string& where = {})
    {
        if (one && other) {
            return true;
        }
        const Named& had = one ? *one : *other;
        const std::string text
            = fmt::format("{}{}{}", label(had.name, idOf(had)), where.empty() ? "" : " of ", where);
        add(kind, text, "", one ? std::optional(label(had.name, idOf(had))) : std::nullopt,
            other ? std::optional(label(had.name, idOf(had))) : std::nullopt);
        return false;
    }

    void add(std::string kind, std::string where, std::string what, std::optional<std::string> before,
        std::optional<std::string> after)
    {
        differences_.push_back(
            { std::move(kind), std::move(where), std::move(what), std::move(before), std::move(after) });
    }

    /// Compares texts that both sides name alike.
    void compareTexts(const std::string& kind, const std::string& where, const Texts& one, const Texts& other)
    {
        for (std::size_t i = 0; i < one.size(); ++i) {
            if (one[i].second != other[i].second) {
                add(kind, where, one[i].first, one[i].second, other[i].second);
            }
        }
    }

    static Texts textsOf(const writing::NewDescription& description)
    {
        Texts texts { { "number", std::to_string(*description.id) }, { "name", description.name },
            { "name in Russian", description.russianName }, { "units", description.units },
            { "units in Russian", description.russianUnits }, { "types", description.types },
            { "states", description.states }, { "scalar", description.scalar ? "1" : "0" },
            { "vector", description.vector ? "1" : "0" } };
        for (const std::string_view key : { "Symbol", "ArgumentUnits", "ArgumentName" }) {
            const auto found = std::ranges::find(description.keys, key, &writing::KeyChange::key);
            texts.emplace_back(key, found == description.keys.end() ? std::string() : found->value);
        }
        return texts;
    }

    void compareDescriptions(const writing::NewDescription* one, const writing::NewDescription* other)
    {
        if (areBoth("description", one, other)) {
            compareTexts("description", label(one->name, *one->id), textsOf(*one), textsOf(*other));
        }
    }

    static Texts textsOf(const Compared& side, const Substance& substance)
    {
        std::vector<std::string> parts;
        for (const COMPONENT& component : substance.composition) {
            parts.push_back(
                fmt::format("{} {}", component.molarFraction, nameIn(side.substances, component.matterId)));
        }
        const SubstanceNotes notes = side.annotations.substance(substance.id);
        return { { "number", std::to_string(substance.id) }, { "name", substance.name },
            { "comment", substance.comment }, { "formula", notes.formula }, { "aliases", aliasesText(notes) },
            { "CAS number", notes.cas }, { "mixture", substance.mixture > 0 ? "1" : "0" },
            { "composition", fmt::format("{}", fmt::join(parts, " + ")) } };
    }

    void compareSubstances(const Substance* one, const Substance* other)
    {
        if (!areBoth("substance", one, other)) {
            return;
        }
        compareTexts("substance", label(one->name, one->id), textsOf(one_, *one), textsOf(other_, *other));
        compareValues(*one, *other, Owner(), Owner(), one->name);
        compareOwners(
            "phase", *one, *other, one_.database.phases(one->id), other_.database.phases(other->id));
        compareOwners(
            "change", *one, *other, one_.database.changes(one->id), other_.database.changes(other->id));
    }

    static Texts textsOf(const Compared& side, const Substance& substance, const Owner& owner)
    {
        Texts texts { { "number", std::to_string(owner.id) }, { "name", owner.name } };
        if (owner.kind == Owner::Kind::Phase) {
            texts.emplace_back("state", stateText(owner.state));
            return texts;
        }
        const auto phases = side.database.phases(substance.id);
        texts.emplace_back("from", nameIn(phases, owner.phase1));
        texts.emplace_back("to", nameIn(phases, owner.phase2));
        return texts;
    }

    void compareOwners(const std::string& kind, const Substance& one, const Substance& other,
        const std::vector<Owner>& owners, const std::vector<Owner>& others)
    {
        for (const Pair& pair : pairsOf(owners, others)) {
            const Owner* owner = pick(owners, pair.one);
            const Owner* match = pick(others, pair.other);
            if (!areBoth(kind, owner, match, one.name)) {
                continue;
            }
            const std::string where = fmt::format("{}, {} {}", one.name,
                kind == "phase" ? "phase" : "phase change", label(owner->name, owner->id));
            compareTexts(kind, where, textsOf(one_, one, *owner), textsOf(other_, other, *match));
            compareValues(one, other, *owner, *match,
                fmt::format("{}, {} {}", one.name, kind == "phase" ? "phase" : "phase change", owner->name));
        }
    }

    void compareValues(const Substance& one, const Substance& other, const Owner& owner, const Owner& match,
        const std::string& where)
    {
        const auto parameters = one_.database.parameters(one.id, owner);
        const auto others = other_.database.parameters(other.id, match);
        for (const Pair& pair : pairsOf(parameters, others)) {
            const Parameter* parameter = pick(parameters, pair.one);
            const Parameter* same = pick(others, pair.other);
            if (!areBoth("value", parameter, same, where)) {
                continue;
            }
            const std::string place = fmt::format("{} of {}", label(parameter->name, parameter->id), where);
            compareTexts(
                "value", place, notesOf(one_, one, owner, *parameter), notesOf(other_, other, match, *same));
            compareNumbers(place, *parameter, tableOf(one_, one, owner, *parameter, place),
                tableOf(other_, other, match, *same, place));
        }
    }

    static Texts notesOf(
        const Compared& side, const Substance& substance, const Owner& owner, const Parameter& parameter)
    {
        const ValueNotes notes = side.annotations.value(substance.id, owner, parameter.id);
        return { { "type", std::string(typeLetter(parameter.type)) }, { "source", notes.source },
            { "accuracy", notes.accuracy }, { "comments", side.annotations.comments(notes.dataFile) } };
    }

    /// Throws Failure for a value that cannot be read: nobody knows whether it is the same.
    static Table tableOf(const Compared& side, const Substance& substance, const Owner& owner,
        const Parameter& parameter, const std::string& place)
    {
        try {
            return side.database.value(substance.id, owner, parameter.id);
        } catch (const UnreadableValue& failure) {
            throw Failure("{}: {}", place, failure.what());
        }
    }

    bool isSame(double one, double other) const
    {
        return one == other || (std::isnan(one) && std::isnan(other))
            || std::abs(one - other) <= tolerance_ * std::max(std::abs(one), std::abs(other));
    }

    bool isSame(std::span<const double> one, std::span<const double> other) const
    {
        return std::ranges::equal(one, other, [this](double a, double b) { return isSame(a, b); });
    }

    static std::span<const double> argumentsOf(const Table& table, const Point& point)
    {
        return std::span(point.arguments).first(table.arguments);
    }

    static std::span<const double> componentsOf(const Table& table, const Point& point)
    {
        return std::span(point.components).first(table.components);
    }

    void compareNumbers(
        const std::string& place, const Parameter& parameter, const Table& one, const Table& other)
    {
        if (one.arguments != other.arguments || one.components != other.components) {
            const auto form = [](const Table& table) {
                return fmt::format(
                    "{} arguments, {}", table.arguments, table.components > 1 ? "vector" : "scalar");
            };
            add("value", place, "form", form(one), form(other));
            return;
        }
        const bool sameArguments
            = std::ranges::equal(one.points, other.points, [&](const Point& a, const Point& b) {
                  return isSame(argumentsOf(one, a), argumentsOf(other, b));
              });
        if (sameArguments) {
            for (std::size_t i = 0; i < one.points.size(); ++i) {
                comparePoint(place, parameter, one, &one.points[i], &other.points[i]);
            }
            return;
        }
        compareByArguments(place, parameter, one, other);
    }

    /// Points with the same arguments are the same ones, whatever stands between them.
    void compareByArguments(
        const std::string& place, const Parameter& parameter, const Table& one, const Table& other)
    {
        std::multimap<std::array<double, 2>, const Point*> places;
        for (const Point& point : other.points) {
            places.emplace(point.arguments, &point);
        }
        for (const Point& point : one.points) {
            const auto found = places.find(point.arguments);
            comparePoint(place, parameter, one, &point, found == places.end() ? nullptr : found->second);
            if (found != places.end()) {
                places.erase(found);
            }
        }
        for (const auto& [arguments, point] : places) {
            comparePoint(place, parameter, one, nullptr, point);
        }
    }

    void comparePoint(const std::string& place, const Parameter& parameter, const Table& table,
        const Point* one, const Point* other)
    {
        if (one && other && isSame(componentsOf(table, *one), componentsOf(table, *other))) {
            return;
        }
        const std::string at = pointText(parameter, table, one ? *one : *other);
        add("value", place, at.empty() ? "value" : fmt::format("at {}", at),
            one ? std::optional(componentsText(table, *one)) : std::nullopt,
            other ? std::optional(componentsText(table, *other)) : std::nullopt);
    }

    const Compared& one_;
    const Compared& other_;
    double tolerance_;
    std::vector<Difference> differences_;
};

} // namespace

std::vector<Difference> compare(
    const Compared& one, const Compared& other, double tolerance, const std::function<void()>& step)
{
    return Comparison(one, other, tolerance).run(step);
}

} // namespace tool
