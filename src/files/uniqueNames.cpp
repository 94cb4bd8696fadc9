#include "files/uniqueNames.h"

#include "format/innerText.h"
#include "format/paths.h"
#include "qm/CQMDirectoryScanner.h"

#include <optional>
#include <vector>

namespace {

/// For a directory that cannot be listed.
std::string probe(const CDirectory& directory, std::string_view prefix, std::string_view extension)
{
    for (std::size_t number = 1;; ++number) {
        std::string name = format::numberedName(prefix, number, extension);
        if (qm::CQMFileSystem::IsFree(directory.pathOf(name))) {
            return name;
        }
    }
}

/// The smallest positive number that is not among those taken.
std::size_t firstFree(const std::vector<std::size_t>& taken)
{
    // Of n numbers taken, at least one of 1 to n + 1 is free.
    std::vector<bool> isTaken(taken.size() + 2);
    for (const std::size_t number : taken) {
        if (number < isTaken.size()) {
            isTaken[number] = true;
        }
    }
    std::size_t number = 1;
    while (isTaken[number]) {
        ++number;
    }
    return number;
}

} // namespace

std::string uniqueName(const CDirectory& directory, std::string_view prefix, std::string_view extension)
{
    qm::CQMDirectoryScanner scanner(directory.descriptor());
    std::vector<std::size_t> taken;
    while (scanner.GetNext()) {
        const std::string name = format::text::fromLocale(scanner.name());
        const std::optional<std::size_t> number = format::numberOf(name, prefix, extension);
        if (number && !scanner.isMissing()) {
            taken.push_back(*number);
        }
    }
    if (scanner.error() != 0) {
        return probe(directory, prefix, extension);
    }
    return format::numberedName(prefix, firstFree(taken), extension);
}
