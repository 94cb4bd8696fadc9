#include "writing/FreeNames.h"

#include "annotations/scan.h"
#include "common/encodings.h"

#include "format/vocabulary.h"

#include <filesystem>
#include <fmt/format.h>

namespace tool::writing {

std::string dataNameOf(const std::string& headName)
{
    return fmt::format("{}.{}", format::splitPath(headName).name, format::dataExtension);
}

FreeNames::Place& FreeNames::placeOf(const std::string& directory)
{
    const auto [found, isNew] = places_.try_emplace(directory);
    if (isNew) {
        std::error_code ignored;
        const std::filesystem::path path = toLocale(entryPath(root_, directory));
        for (const auto& entry : std::filesystem::directory_iterator(path, ignored)) {
            found->second.taken.insert(entry.path().filename().native());
        }
    }
    return found->second;
}

std::string FreeNames::next(const std::string& directory, format::Series series)
{
    Place& place = placeOf(directory);
    for (std::size_t& number = place.last[series];;) {
        std::string name = format::numberedName(series, ++number);
        const bool isHead = series == format::Series::Heads;
        if (!place.taken.contains(name) && !(isHead && place.taken.contains(dataNameOf(name)))) {
            place.taken.insert(name);
            return name;
        }
    }
}

std::string FreeNames::nextFile(const std::string& stem, std::string_view extension)
{
    Place& place = placeOf("");
    for (int number = 1;; ++number) {
        std::string name = fmt::format("{}{}.{}", stem, number == 1 ? "" : std::to_string(number), extension);
        if (place.taken.insert(name).second) {
            return name;
        }
    }
}

} // namespace tool::writing
