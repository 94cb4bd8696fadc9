#include "commands/subcommand.h"

#include "check/check.h"
#include "common/encodings.h"
#include "common/names.h"
#include "database/statusText.h"

#include <filesystem>
#include <fmt/ranges.h>

namespace tool {

namespace {

namespace fs = std::filesystem;

/// The directory above, when that is a database; else empty.
std::string databaseAbove(const std::string& place)
{
    std::error_code failure;
    const fs::path whole = fs::weakly_canonical(toLocale(place), failure);
    const std::string above = failure ? "" : fromLocale(whole.parent_path().c_str());
    return !above.empty() && check::holdsDatabase(above) ? above : "";
}

/// Which directory may be meant by a name that is none.
std::string directoryHint(const std::string& wanted)
{
    std::error_code failure;
    const fs::path path(toLocale(wanted));
    if (fs::exists(path, failure)) {
        const std::string above = databaseAbove(wanted);
        return above.empty() ? "" : fmt::format("; it lies in the database \"{}\": give that", above);
    }
    const fs::path parent = path.parent_path();
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(parent.empty() ? "." : parent, failure)) {
        const std::string name = (parent / entry.path().filename()).string();
        if (entry.is_directory(failure) && toLocale(toUtf8(toWide(name))) == name) {
            names.push_back(name);
        }
    }
    const auto near = nearMatches(names, wanted);
    return near.empty() ? "; the first argument is the directory of the database"
                        : fmt::format("; near matches: {}", fmt::join(near, ", "));
}

} // namespace

const CLI::Validator& notEmpty()
{
    static const CLI::Validator validator(
        [](const std::string& text) { return text.empty() ? "an empty text names nothing" : ""; }, "");
    return validator;
}

void requireDatabase(const std::string& directory)
{
    if (!std::filesystem::is_directory(toLocale(directory))) {
        throw Failure("\"{}\" is not a directory{}", directory, directoryHint(directory));
    }
    if (!check::holdsDatabase(directory)) {
        const std::string above = databaseAbove(directory);
        throw NoDatabase("\"{}\" is no database: nothing in it belongs to one\n{}", directory,
            above.empty() ? "\"qmdb new\" makes a database"
                          : fmt::format("it lies in the database \"{}\": give that", above));
    }
}

void requireListable(const std::string& directory)
{
    std::error_code failure;
    const std::filesystem::directory_iterator entries(toLocale(directory), failure);
    if (failure) {
        throw Failure("cannot list \"{}\": {}\n{}", directory, failure.message(), checkHint(directory));
    }
}

} // namespace tool
