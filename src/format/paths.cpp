#include "format/paths.h"

#include "format/vocabulary.h"

#include <algorithm>

namespace format {

namespace {

constexpr std::string_view separators = "/\\";

struct SeriesParts {
    std::string_view prefix;
    std::string_view extension; ///< empty for directories
};

/// In the order of the enumeration.
constexpr SeriesParts allSeries[] = { { substancePrefix, {} }, { phasePrefix, {} }, { phaseChangePrefix, {} },
    { headPrefix, headExtension } };
static_assert(std::size(allSeries) == seriesCount);

const SeriesParts& partsOf(Series series) noexcept
{
    return allSeries[static_cast<std::size_t>(series)];
}

} // namespace

PathParts splitPath(std::string_view path) noexcept
{
    const std::size_t separator = path.find_last_of(separators);
    const std::size_t start = separator == std::string_view::npos ? 0 : separator + 1;
    PathParts parts;
    parts.dir = start >= 2 ? path.substr(0, separator) : std::string_view();
    parts.name = path.substr(start);
    const std::size_t point = parts.name.rfind('.');
    if (point != std::string_view::npos) {
        parts.ext = parts.name.substr(point + 1);
        parts.name = parts.name.substr(0, point);
    }
    return parts;
}

bool isBareName(std::string_view name) noexcept
{
    return std::ranges::all_of(separators, [name](char c) { return name.find(c) == std::string_view::npos; });
}

std::string joinPath(std::string_view directory, std::string_view name)
{
    std::string path;
    path.reserve(directory.size() + 1 + name.size());
    path.append(directory).append(1, '/').append(name);
    return path; // moved, where the result of append() would be copied
}

std::string shown(std::string_view path)
{
    constexpr char firstNoControl = ' ';
    constexpr char deleteCharacter = '\x7F';
    std::string text(path);
    std::ranges::replace_if(
        text, [](char c) { return (c >= '\0' && c < firstNoControl) || c == deleteCharacter; }, '?');
    return text;
}

std::string_view scannedPath(std::string_view directory) noexcept
{
    const bool endsInSeparator = !directory.empty() && separators.find(directory.back()) != separators.npos;
    directory.remove_suffix(endsInSeparator ? 1 : 0);
    return directory;
}

bool hasExtension(std::string_view name, std::string_view extension) noexcept
{
    return name.size() > extension.size() && name[name.size() - extension.size() - 1] == '.'
        && std::equal(extension.rbegin(), extension.rend(), name.rbegin()); // mostly the last differs
}

std::string numberedName(Series series, std::size_t number)
{
    const auto& [prefix, extension] = partsOf(series);
    std::string name(prefix);
    name += std::to_string(number);
    if (!extension.empty()) {
        name.append(1, '.').append(extension);
    }
    return name;
}

std::optional<std::size_t> numberOf(std::string_view name, Series series) noexcept
{
    const auto& [prefix, extension] = partsOf(series);
    if (!name.starts_with(prefix)) {
        return std::nullopt;
    }
    name.remove_prefix(prefix.size());
    if (!extension.empty()) {
        if (!hasExtension(name, extension)) {
            return std::nullopt;
        }
        name.remove_suffix(extension.size() + 1);
    }
    constexpr std::size_t maxDigits = 18; // more are never the first number that is free
    if (name.empty() || name.size() > maxDigits || name.front() == '0') {
        return std::nullopt;
    }
    std::size_t number = 0;
    for (const char c : name) {
        if (c < '0' || c > '9') {
            return std::nullopt;
        }
        number = number * 10 + static_cast<std::size_t>(c - '0');
    }
    return number;
}

} // namespace format
