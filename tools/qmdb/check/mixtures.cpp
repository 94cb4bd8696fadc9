#include "check/rules.h"

#include "common/characters.h"
#include "common/numbers.h"

#include "format/composition.h"

#include <algorithm>
#include <fmt/format.h>
#include <set>
#include <vector>

namespace tool::check {

namespace {

using format::Key;

constexpr char separators[] = { format::fractionSeparator, format::componentSeparator, '\0' };
constexpr double tolerance = 0.6e-6; // a fraction, which is written with six significant digits

std::vector<std::string> split(const std::string& text, char separator)
{
    std::vector<std::string> parts { "" };
    for (const char character : text) {
        if (character == separator) {
            parts.emplace_back();
        } else {
            parts.back() += character;
        }
    }
    return parts;
}

/// Why the library refuses a composition as a whole.
std::string_view refusalOf(const std::string& text)
{
    const std::size_t last = text.find_last_of(separators);
    if (last != std::string::npos && last + 2 == text.size()) {
        return "the last fraction may not be a single character: write 1.0, not 1";
    }
    return "write SUBSTANCE:FRACTION and put semicolons between, as in 1:0.4;2:0.6";
}

/// Reports what the library reads all the same, but not as it stands there.
void checkComponent(
    Context& context, const Place& place, const std::string& component, const std::set<long>& ids)
{
    const std::vector<std::string> parts = split(component, format::fractionSeparator);
    const bool wellFormed = parts.size() == 2 && asWholeNumber(parts.front());
    if (!wellFormed) {
        context.findings.error("bad-composition", place, fmt::format("{} is no component", shown(component)),
            "write SUBSTANCE:FRACTION, the substance by its ID");
        return;
    }
    if (const long id = *asWholeNumber(parts.front()); !ids.contains(id)) {
        context.findings.error("unknown-component", place.behind(""),
            fmt::format("no substance has the ID {}", id), "write the ID of a substance of this database");
    }
    readNumber(context, place, parts.back(), "a molar fraction");
}

void checkSum(Context& context, const Place& place, const std::vector<COMPONENT>& components)
{
    const double sum = format::sumOfFractions(components);
    const bool eachPositive = std::ranges::all_of(
        components, [](const COMPONENT& component) { return component.molarFraction > 0; });
    if (!(sum >= format::minSumOfFractions
            && sum <= format::maxSumOfFractions + tolerance * static_cast<double>(components.size()))
        || !eachPositive) {
        context.findings.error("bad-fractions", place,
            eachPositive ? fmt::format("the molar fractions add up to {}", sum)
                         : "a molar fraction is not above 0",
            "write fractions above 0 that add up to 1");
    }
}

void checkRepeats(Context& context, const Place& place, const std::vector<COMPONENT>& components, long own)
{
    std::set<long> seen;
    for (const COMPONENT& component : components) {
        if (component.matterId == own || !seen.insert(component.matterId).second) {
            context.findings.warning("repeated-component", place,
                component.matterId == own ? "the mixture is a component of itself"
                                          : fmt::format("substance {} occurs twice", component.matterId),
                "name each other substance once");
        }
    }
}

void checkMixture(Context& context, const Descriptor& substance, const std::set<long>& ids)
{
    const std::string text = substance.text(Key::Composition);
    const Place place = substance.place(Key::Composition);
    std::vector<COMPONENT> components;
    if (format::parseComposition(text, components) != format::CompositionResult::Read) {
        context.findings.error("bad-composition", place,
            fmt::format("{} cannot be read, so that no list of the substances can be had", shown(text)),
            refusalOf(text));
        return;
    }
    if (components.empty()) {
        context.findings.error("bad-composition", place, "the mixture has no composition",
            "write SUBSTANCE:FRACTION;SUBSTANCE:FRACTION");
        return;
    }
    if (text.ends_with(format::componentSeparator)) {
        context.findings.error(
            "bad-composition", place, "the semicolon at the end adds an empty component", "remove it");
        return;
    }
    if (components.size() == 1) {
        context.findings.warning("single-component", place,
            "a mixture of one component is a pure substance, and no mixture that can be added",
            "name two components or more");
    }
    for (const std::string& component : split(text, format::componentSeparator)) {
        checkComponent(context, place, component, ids);
    }
    checkSum(context, place, components);
    checkRepeats(context, place, components, substance.number(Key::ID));
}

} // namespace

void checkComposition(Context& context, const Descriptor& substance, const std::set<long>& ids)
{
    if (substance.number(Key::Mixture) > 0) {
        checkMixture(context, substance, ids);
    } else if (substance.has(Key::Mixture) && !substance.text(Key::Composition).empty()) {
        context.findings.warning("unused-composition", substance.place(Key::Composition),
            "the composition of a pure substance is not read",
            "write \"Mixture=1\", or leave the composition empty");
    }
}

} // namespace tool::check
