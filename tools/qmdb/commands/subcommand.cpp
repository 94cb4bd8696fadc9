#include "commands/subcommand.h"

#include "check/check.h"
#include "common/encodings.h"
#include "database/statusText.h"

#include <filesystem>

namespace tool {

const CLI::Validator& notEmpty()
{
    static const CLI::Validator validator(
        [](const std::string& text) { return text.empty() ? "an empty text names nothing" : ""; }, "");
    return validator;
}

void requireDatabase(const std::string& directory)
{
    if (!std::filesystem::is_directory(toLocale(directory))) {
        throw Failure("\"{}\" is not a directory", directory);
    }
    if (!check::holdsDatabase(directory)) {
        throw NoDatabase("\"{}\" is no database: nothing in it belongs to one\n"
                         "\"qmdb new\" makes a database",
            directory);
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
