#include "commands/plotPicture.h"

#include "commands/owners.h"
#include "common/characters.h"
#include "common/encodings.h"
#include "common/failure.h"
#include "common/russian.h"
#include "output/columns.h"
#include "units/spelling.h"

#include <algorithm>
#include <cwctype>
#include <fmt/ranges.h>
#include <set>

namespace tool {

namespace {

constexpr std::size_t longestTitle = 80;

/// Names and units of an argument in the language of the picture.
ArgumentNotes inLanguage(ArgumentNotes notes, const std::string& language)
{
    if (isRussian(language)) {
        notes.name = argumentInRussian(notes.name);
        notes.symbol = argumentInRussian(notes.symbol);
        notes.units = spelledInRussian(notes.units);
    }
    return notes;
}

std::string withUnits(const std::string& name, const std::string& units)
{
    return printable(units.empty() ? name : fmt::format("{}, {}", name, units));
}

std::string capitalised(const std::string& text)
{
    std::wstring wide = toWide(text);
    if (!wide.empty()) {
        wide.front() = static_cast<wchar_t>(std::towupper(static_cast<std::wint_t>(wide.front())));
    }
    return toUtf8(wide);
}

std::string axisLabel(const ArgumentNotes& notes)
{
    return withUnits(capitalised(notes.name.empty() ? notes.symbol : notes.name), notes.units);
}

const ArgumentNotes& lastArgument(const Drawn& drawn)
{
    return drawn.notes.arguments.back();
}

/// What a value is and of what, for messages.
std::string whatText(const Drawn& drawn)
{
    return fmt::format("{} of {}", drawn.parameter.name, ownerText(drawn.substance, drawn.owner));
}

/// The first table: it tells what the picture is drawn over.
const Drawn& firstTable(const std::vector<Drawn>& values)
{
    const auto table = std::ranges::find_if(values, [](const Drawn& drawn) { return !drawn.isConstant(); });
    if (table == values.end()) {
        throw Failure("{} is a constant: there is no curve to draw", whatText(values.front()));
    }
    return *table;
}

void requireOneKind(const std::vector<Drawn>& values)
{
    const Drawn& first = firstTable(values);
    for (const Drawn& drawn : values) {
        if (drawn.parameter.units != first.parameter.units) {
            throw Failure("{} is in {}, {} in {}: they do not fit into one picture; try --units",
                whatText(first), first.parameter.units, whatText(drawn), drawn.parameter.units);
        }
        if (!drawn.isConstant() && lastArgument(drawn).label() != lastArgument(first).label()) {
            throw Failure("{} is a table over {}, {} over {}: they do not fit into one picture",
                whatText(first), lastArgument(first).label(), whatText(drawn), lastArgument(drawn).label());
        }
    }
}

std::size_t distinctSubstances(const std::vector<Drawn>& values)
{
    std::set<long> substances;
    std::ranges::for_each(values, [&](const Drawn& drawn) { substances.insert(drawn.substance.id); });
    return substances.size();
}

std::size_t distinctOwners(const std::vector<Drawn>& values)
{
    std::set<std::string> owners;
    std::ranges::for_each(values, [&](const Drawn& drawn) { owners.insert(drawn.owner.name); });
    return owners.size();
}

std::string joined(const std::string& substance, const std::string& owner)
{
    return substance + (substance.empty() || owner.empty() ? "" : ", ") + owner;
}

/// What tells a value from the others in the picture: its substance, its phase, both or nothing.
std::string distinction(const std::vector<Drawn>& values, const Drawn& drawn)
{
    return joined(distinctSubstances(values) > 1 ? drawn.substance.name : "",
        distinctOwners(values) > 1 ? drawn.owner.name : "");
}

/// What is compared: "Copper, Iron; Solid", "Water: Liquid, Steam" and the like; how many it is when that is
/// too long.
std::string subjectOf(const std::vector<Drawn>& values, const std::string& language)
{
    const Drawn& first = values.front();
    std::vector<std::string> parts;
    for (const Drawn& drawn : values) {
        const std::string part = values.size() == 1 ? joined(first.substance.name, first.owner.name)
                                                    : distinction(values, drawn);
        if (std::ranges::find(parts, part) == parts.end()) {
            parts.push_back(part);
        }
    }
    const bool manySubstances = distinctSubstances(values) > 1;
    std::string subject
        = fmt::format("{}", fmt::join(parts, manySubstances && distinctOwners(values) > 1 ? "; " : ", "));
    if (displayWidth(subject) > longestTitle) {
        subject = fmt::format(fmt::runtime(isRussian(language) ? "кривых: {}" : "{} curves"), parts.size());
    }
    if (manySubstances && distinctOwners(values) == 1 && !first.owner.name.empty()) {
        subject += "; " + first.owner.name;
    }
    return !manySubstances && values.size() > 1 ? joined(first.substance.name, subject) : subject;
}

/// The title of the curve of one component; the first argument of a table of two is part of it.
std::string curveTitle(const std::string& distinction, const Drawn& drawn, const ArgumentNotes& first,
    const Point& point, std::size_t component)
{
    std::vector<std::string> parts;
    if (!distinction.empty()) {
        parts.push_back(distinction);
    }
    if (drawn.table.components > 1) {
        parts.emplace_back(componentName(drawn.table.components, component));
    }
    if (drawn.table.arguments > 1) {
        parts.push_back(fmt::format(
            "{} = {}{}{}", first.symbol, point.arguments[0], first.units.empty() ? "" : " ", first.units));
    }
    return printable(fmt::format("{}", fmt::join(parts, ", ")));
}

/// Builds the curves of values in the picture's language.
class CurveBuilder {
public:
    CurveBuilder(Picture& picture, const std::vector<Drawn>& values, const std::string& language)
        : picture_(picture)
        , values_(values)
        , language_(language)
    {
    }

    /// Appends the curves of one component: one, or one for each first argument.
    void append(const Drawn& drawn, std::size_t component)
    {
        const std::size_t arguments = drawn.table.arguments;
        const ArgumentNotes first
            = arguments > 1 ? inLanguage(drawn.notes.arguments.front(), language_) : ArgumentNotes();
        const std::string name = distinction(values_, drawn);
        const Point* previous = nullptr;
        for (const Point& point : drawn.table.points) {
            if (!previous || (arguments > 1 && point.arguments[0] != previous->arguments[0])) {
                picture_.curves.push_back({ curveTitle(name, drawn, first, point, component), component,
                    drawn.isConstant(), point.arguments[0], {} });
            }
            const double x = arguments == 0 ? 0 : point.arguments[arguments - 1];
            picture_.curves.back().dots.push_back({ x, point.components[component] });
            previous = &point;
        }
    }

private:
    Picture& picture_;
    const std::vector<Drawn>& values_;
    const std::string& language_;
};

} // namespace

Picture pictureOf(const std::vector<Drawn>& values, const std::string& language)
{
    requireOneKind(values);
    const Drawn& table = firstTable(values);
    Picture picture;
    picture.title = printable(fmt::format("{}: {}", table.parameter.name, subjectOf(values, language)));
    picture.x.label = axisLabel(inLanguage(table.notes.arguments.back(), language));
    picture.y.label = withUnits(table.parameter.name, table.parameter.units);
    picture.units = printable(table.parameter.units);
    picture.isFamily = values.size() == 1 && table.table.arguments > 1 && table.table.components == 1;
    picture.familyLabel
        = picture.isFamily ? axisLabel(inLanguage(table.notes.arguments.front(), language)) : "";
    CurveBuilder builder(picture, values, language);
    for (const Drawn& drawn : values) {
        for (std::size_t component = 0; component < drawn.table.components; ++component) {
            builder.append(drawn, component);
        }
    }
    return picture;
}

} // namespace tool
