// Paths are cut as their rules say, their parts put together give them again, and numbered names keep
// numbers.

#include "format/paths.h"
#include "format/keys.h"
#include "fuzz.h"

#include <algorithm>
#include <cstring>

namespace {

using fuzz::require;

void cut(const std::string& path)
{
    const format::PathParts parts = format::splitPath(path);
    const std::size_t start = path.find_last_of("/\\") + 1; // 0 without a separator
    const std::string name = path.substr(start);
    const std::size_t point = std::min(name.rfind('.'), name.size());
    require(
        parts.dir == (start >= 2 ? path.substr(0, start - 1) : ""), "the directory ends at the separator");
    require(parts.name == name.substr(0, point), "the name ends at the last point");
    require(parts.ext == name.substr(std::min(point + 1, name.size())), "the extension follows the point");
    require(path.substr(0, start) + std::string(parts.name) + (point < name.size() ? "." : "")
                + std::string(parts.ext)
            == path,
        "the parts give the path");
    require(format::isBareName(path) == (start == 0), "a bare name has no separator");
    for (const std::string_view extension : { format::substanceExtension, format::headExtension }) {
        require(format::hasExtension(path, extension) == (parts.ext == extension), "extensions are compared");
    }
    if (!parts.dir.empty()) {
        const std::string joined = format::joinPath(parts.dir, name);
        require(format::splitPath(joined).dir == parts.dir, "a path keeps its directory");
        require(format::scannedPath(path.substr(0, start)) == parts.dir, "one separator is dropped");
    }
}

void show(const std::string& path)
{
    const std::string shown = format::shown(path);
    require(std::ranges::equal(path, shown,
                [](unsigned char c, unsigned char by) { return c < ' ' || c == 127 ? by == '?' : by == c; }),
        "control characters are shown as \"?\"");
}

void number(std::string_view name, std::size_t number)
{
    constexpr std::size_t first = 1;
    constexpr std::size_t last = 999'999'999'999'999'999;
    for (std::size_t i = 0; i < format::seriesCount; ++i) {
        const auto series = static_cast<format::Series>(i);
        const bool kept = number >= first && number <= last;
        require(format::numberOf(format::numberedName(series, number), series)
                == (kept ? std::optional(number) : std::nullopt),
            "a number is found again");
        const std::optional<std::size_t> found = format::numberOf(name, series);
        require(!found || format::numberedName(series, *found) == name, "a name has one number");
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = fuzz::Input(data, size).rest();
    std::size_t anyNumber = 0;
    std::memcpy(&anyNumber, data, std::min(size, sizeof anyNumber));
    cut(text);
    show(text);
    number(text, anyNumber);
    number(text, anyNumber % 1000);
    return 0;
}
