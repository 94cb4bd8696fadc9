#include "database/LogDirectory.h"

#include "common/encodings.h"
#include "common/failure.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace tool {

namespace {

constexpr auto logFile = "/qmdb.log";

std::string makeTemporaryDirectory()
{
    const char* parent = std::getenv("TMPDIR");
    std::string path = fmt::format("{}/qmdb-XXXXXX", parent && *parent ? parent : "/tmp");
    if (!::mkdtemp(path.data())) {
        throw Failure("cannot make a temporary directory for the log; set TMPDIR or give --log DIR");
    }
    return path;
}

std::string requireWritable(const std::string& named)
{
    std::string path = toLocale(named);
    if (!std::filesystem::is_directory(path)) {
        throw Failure("the log directory \"{}\" does not exist", named);
    }
    // The library goes on without a log that it cannot write.
    const std::string file = path + logFile;
    const bool exists = ::access(file.c_str(), F_OK) == 0;
    const int refused = exists ? ::access(file.c_str(), W_OK) : ::access(path.c_str(), W_OK | X_OK);
    if (refused != 0) {
        throw Failure("cannot write the log to \"{}\": {}", named, std::strerror(errno));
    }
    return path;
}

} // namespace

LogDirectory::LogDirectory(const std::string& named)
    : temporary_(named.empty())
{
    const BlockSignals blocked;
    path_ = temporary_ ? makeTemporaryDirectory() : requireWritable(named);
    if (temporary_) {
        directoryLeft_.emplace(path_);
        fileLeft_.emplace(path_ + logFile);
    }
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
    std::ifstream log(path_ + logFile, std::ios::binary);
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
