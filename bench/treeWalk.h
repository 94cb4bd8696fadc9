#pragma once

#include <algorithm>
#include <filesystem>
#include <string_view>

namespace bench {

/// What is done with the descriptors of a tree once they are read.
enum class Reading { discard, cut };

struct WalkTotals {
    long files = 0;
    long nameBytes = 0; ///< of files and directories
    long contentBytes = 0;
    long entries = 0; ///< keys with their values
};

/// The least that opens a tree: each directory is listed once, each descriptor opened, read and closed
/// once, and nothing else is asked of the system.
WalkTotals walkTree(const std::filesystem::path& root, Reading reading);

/// Does opening a database read a file of this name?
bool isDescriptor(std::string_view name) noexcept;

/// Calls visit(key, value) for each line of a descriptor.
template <class Visit>
void forEachEntry(std::string_view text, Visit&& visit)
{
    constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
    text.remove_prefix(text.starts_with(utf8Mark) ? utf8Mark.size() : 0);
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        const std::size_t sign = line.find('=');
        if (sign != std::string_view::npos) {
            visit(line.substr(0, sign), line.substr(sign + 1));
        }
    }
}

} // namespace bench
