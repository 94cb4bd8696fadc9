#include "database/LogDirectory.h"

#include "common/encodings.h"
#include "common/failure.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace tool {

namespace {

std::string makeTemporaryDirectory()
{
    const char* parent = std::getenv("TMPDIR");
    std::string path = fmt::format("{}/qmdb-XXXXXX", parent && *parent ? parent : "/tmp");
    if (!::mkdtemp(path.data())) {
        throw Failure("cannot make a temporary directory for the log; set TMPDIR or give --log DIR");
    }
    return path;
}

std::string requireDirectory(const std::string& named)
{
    if (!std::filesystem::is_directory(toLocale(named))) {
        throw Failure("the log directory \"{}\" does not exist", named);
    }
    return toLocale(named);
}

} // namespace

LogDirectory::LogDirectory(const std::string& named)
    : path_(named.empty() ? makeTemporaryDirectory() : requireDirectory(named))
    , temporary_(named.empty())
{
}

LogDirectory::~LogDirectory()
{
    if (temporary_) {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
}

std::vector<std::string> LogDirectory::newErrors()
{
    constexpr std::string_view prefix = "ERROR: ";
    std::ifstream log(path_ + "/qmdb.log", std::ios::binary);
    log.seekg(static_cast<std::streamoff>(read_));
    std::vector<std::string> errors;
    for (std::string line; std::getline(log, line); read_ += line.size() + 1) {
        if (line.starts_with(prefix)) {
            errors.push_back(line.substr(prefix.size()));
        }
    }
    return errors;
}

} // namespace tool
