#include "common/names.h"

#include "common/encodings.h"
#include "common/failure.h"
#include "common/numbers.h"

#include <algorithm>
#include <cwctype>
#include <fmt/ranges.h>
#include <numeric>
#include <optional>

namespace tool {

namespace {

constexpr std::size_t mostMatches = 6;

/// Insertions, removals, replacements and swaps of neighbours that turn one text into the other.
std::size_t editDistance(std::wstring_view from, std::wstring_view to)
{
    std::vector<std::size_t> beforeLast(to.size() + 1), last(to.size() + 1), row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t { 0 });
    for (std::size_t i = 1; i <= from.size(); ++i) {
        beforeLast.swap(last);
        last.swap(row);
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
            row[j] = std::min({ last[j] + 1, row[j - 1] + 1, replaced });
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
    }
    return row[to.size()];
}

/// How unlike two texts are; nothing when they are no match at all.
std::optional<std::size_t> unlikeness(std::wstring_view text, std::wstring_view wanted)
{
    if (text.empty() || wanted.empty()) {
        return std::nullopt;
    }
    if (text.find(wanted) != std::wstring_view::npos) {
        return 0;
    }
    const std::size_t distance = editDistance(text, wanted);
    const std::size_t tolerance = std::max<std::size_t>(1, wanted.size() / 3);
    return distance <= tolerance ? std::optional(distance) : std::nullopt;
}

template <class Condition>
std::vector<std::size_t> indexesWhere(std::size_t count, Condition condition)
{
    std::vector<std::size_t> indexes;
    for (std::size_t i = 0; i < count; ++i) {
        if (condition(i)) {
            indexes.push_back(i);
        }
    }
    return indexes;
}

std::vector<std::size_t> fitting(const std::vector<Choice>& choices, std::string_view wanted)
{
    const auto where = [&](auto fits) {
        return indexesWhere(choices.size(), [&](std::size_t index) { return fits(choices[index]); });
    };
    auto found = where([&](const Choice& choice) { return choice.name == wanted; });
    if (const auto number = asWholeNumber(wanted); found.empty() && number) {
        found = where([&](const Choice& choice) { return choice.id == *number; });
    }
    if (found.empty()) {
        const std::string lower = lowerCase(wanted);
        found = where([&](const Choice& choice) { return lowerCase(choice.name) == lower; });
    }
    return found;
}

using NameLists = std::vector<std::vector<std::string>>;

/// The other names of each choice.
NameLists listsOf(const std::vector<Choice>& choices, const OtherNames& others)
{
    NameLists names(choices.size());
    for (std::size_t i = 0; others && i < choices.size(); ++i) {
        names[i] = others(i);
    }
    return names;
}

std::vector<std::size_t> fittingOthers(const NameLists& names, std::string_view wanted)
{
    const auto where = [&](auto fits) {
        return indexesWhere(names.size(), [&](std::size_t i) { return std::ranges::any_of(names[i], fits); });
    };
    auto found = where([&](const std::string& name) { return name == wanted; });
    if (found.empty()) {
        const std::string lower = lowerCase(wanted);
        found = where([&](const std::string& name) { return lowerCase(name) == lower; });
    }
    return found;
}

/// The labels of the choices with a name most like `wanted`, best first.
std::vector<std::string> nearLabels(
    const std::vector<Choice>& choices, const NameLists& others, std::string_view wanted)
{
    std::vector<std::string> names;
    std::vector<std::size_t> owners;
    for (std::size_t i = 0; i < choices.size(); ++i) {
        names.push_back(choices[i].name);
        names.insert(names.end(), others[i].begin(), others[i].end());
        owners.resize(names.size(), i);
    }
    std::vector<std::string> near;
    for (const std::string& name : nearMatches(names, wanted)) {
        const auto at = static_cast<std::size_t>(std::ranges::find(names, name) - names.begin());
        const Choice& choice = choices[owners[at]];
        if (const std::string text = label(choice.name, choice.id);
            std::ranges::find(near, text) == near.end()) {
            near.push_back(text);
        }
    }
    return near;
}

std::string unknownText(const std::vector<Choice>& choices, const NameLists& others, std::string_view wanted,
    std::string_view kind)
{
    if (choices.empty()) {
        return fmt::format("there is no {0}, so none is called \"{1}\"", kind, wanted);
    }
    if (const auto near = nearLabels(choices, others, wanted); !near.empty()) {
        return fmt::format("no {} is called \"{}\"; near matches: {}", kind, wanted, fmt::join(near, ", "));
    }
    const std::size_t shown = std::min(choices.size(), mostMatches);
    std::vector<std::string> labels;
    for (std::size_t i = 0; i < shown; ++i) {
        labels.push_back(label(choices[i].name, choices[i].id));
    }
    return fmt::format("no {} is called \"{}\"; there are: {}{}", kind, wanted, fmt::join(labels, ", "),
        shown < choices.size() ? fmt::format(" and {} more", choices.size() - shown) : "");
}

} // namespace

std::size_t chooseIndex(const std::vector<Choice>& choices, std::string_view wanted, std::string_view kind,
    const OtherNames& others)
{
    auto found = fitting(choices, wanted);
    const bool byDisplayName = !found.empty();
    if (!byDisplayName) {
        const NameLists names = listsOf(choices, others);
        found = fittingOthers(names, wanted);
        if (found.empty()) {
            throw UnknownName(unknownText(choices, names, wanted, kind));
        }
    }
    if (found.size() > 1) {
        std::vector<std::string> labels;
        labels.reserve(found.size());
        for (const std::size_t index : found) {
            labels.push_back(label(choices[index].name, choices[index].id));
        }
        throw Failure("\"{}\" {}: {}; give the number", wanted,
            byDisplayName ? "is the name of several" : "may mean several", fmt::join(labels, ", "));
    }
    return found.front();
}

std::string lowerCase(std::string_view utf8)
{
    std::wstring wide = toWide(utf8);
    for (wchar_t& character : wide) {
        character = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(character)));
    }
    return toUtf8(wide);
}

std::string label(std::string_view name, long id)
{
    return fmt::format("{} ({})", name.empty() ? "without name" : name, id);
}

std::vector<std::string> nearMatches(const std::vector<std::string>& texts, std::string_view wanted)
{
    const std::wstring lower = toWide(lowerCase(wanted));
    std::vector<std::pair<std::size_t, std::string>> ranked;
    for (const std::string& text : texts) {
        if (const auto rank = unlikeness(toWide(lowerCase(text)), lower)) {
            ranked.emplace_back(*rank, text);
        }
    }
    std::ranges::stable_sort(ranked, {}, &std::pair<std::size_t, std::string>::first);
    std::vector<std::string> near;
    for (const auto& [rank, text] : ranked) {
        if (near.size() < mostMatches) {
            near.push_back(text);
        }
    }
    return near;
}

} // namespace tool
