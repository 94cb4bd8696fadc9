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
std::vector<std::size_t> indexesWhere(const std::vector<Choice>& choices, Condition condition)
{
    std::vector<std::size_t> indexes;
    for (std::size_t i = 0; i < choices.size(); ++i) {
        if (condition(choices[i])) {
            indexes.push_back(i);
        }
    }
    return indexes;
}

std::vector<std::size_t> fitting(const std::vector<Choice>& choices, std::string_view wanted)
{
    auto found = indexesWhere(choices, [&](const Choice& choice) { return choice.name == wanted; });
    if (const auto number = asWholeNumber(wanted); found.empty() && number) {
        found = indexesWhere(choices, [&](const Choice& choice) { return choice.id == *number; });
    }
    if (found.empty()) {
        const std::string lower = lowerCase(wanted);
        found = indexesWhere(choices, [&](const Choice& choice) { return lowerCase(choice.name) == lower; });
    }
    return found;
}

std::string unknownText(const std::vector<Choice>& choices, std::string_view wanted, std::string_view kind)
{
    if (choices.empty()) {
        return fmt::format("there is no {0}, so none is called \"{1}\"", kind, wanted);
    }
    std::vector<std::string> names, labels;
    for (const Choice& choice : choices) {
        names.push_back(choice.name);
        labels.push_back(label(choice.name, choice.id));
    }
    std::vector<std::string> near;
    for (const std::string& name : nearMatches(names, wanted)) {
        const auto at = std::ranges::find(names, name) - names.begin();
        near.push_back(labels[static_cast<std::size_t>(at)]);
    }
    if (!near.empty()) {
        return fmt::format("no {} is called \"{}\"; near matches: {}", kind, wanted, fmt::join(near, ", "));
    }
    const std::size_t shown = std::min(labels.size(), mostMatches);
    return fmt::format("no {} is called \"{}\"; there are: {}{}", kind, wanted,
        fmt::join(labels.begin(), labels.begin() + static_cast<std::ptrdiff_t>(shown), ", "),
        shown < labels.size() ? fmt::format(" and {} more", labels.size() - shown) : "");
}

} // namespace

std::size_t chooseIndex(const std::vector<Choice>& choices, std::string_view wanted, std::string_view kind)
{
    const auto found = fitting(choices, wanted);
    if (found.empty()) {
        throw Failure(unknownText(choices, wanted, kind));
    }
    if (found.size() > 1) {
        std::vector<std::string> labels;
        labels.reserve(found.size());
        for (const std::size_t index : found) {
            labels.push_back(label(choices[index].name, choices[index].id));
        }
        throw Failure("\"{}\" is the name of several: {}; give the number", wanted, fmt::join(labels, ", "));
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
