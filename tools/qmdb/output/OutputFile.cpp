#include "output/OutputFile.h"

#include "common/encodings.h"
#include "common/failure.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace tool {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void throwUnwritable(const std::string& name, int error)
{
    throw Failure("cannot write \"{}\": {}", name, std::strerror(error));
}

/// What a name stands for behind symbolic links, also where nothing stands there yet.
std::string resolved(const std::string& name)
{
    std::error_code failure;
    const fs::path path = fs::weakly_canonical(toLocale(name), failure);
    return failure ? toLocale(name) : path.string();
}

} // namespace

OutputFile::OutputFile(const std::string& name, Existing existing)
    : name_(name)
    , target_(resolved(name))
    , existing_(existing)
{
    std::error_code ignored;
    const fs::file_status status = fs::status(target_, ignored);
    if (fs::exists(status) && existing_ == Existing::Refuse) {
        throw Failure("\"{}\" exists already; remove it first or give another name", name_);
    }
    direct_ = fs::exists(status) && !fs::is_regular_file(status);
    direct_ ? openDirectly() : openBeside();
}

OutputFile::~OutputFile()
{
    ::close(descriptor_);
    if (leftover_) {
        ::unlink(path_.c_str());
    }
}

void OutputFile::openDirectly()
{
    path_ = target_;
    descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CLOEXEC);
    if (descriptor_ < 0) {
        throwUnwritable(name_, errno);
    }
}

void OutputFile::openBeside()
{
    constexpr mode_t everybody = 0666; // less the user's mask
    struct stat before { };
    const bool replaces = ::stat(target_.c_str(), &before) == 0;
    if (replaces && ::access(target_.c_str(), W_OK) != 0) {
        throwUnwritable(name_, errno);
    }
    path_ = fs::path(target_).replace_filename(fmt::format(".qmdb-{}.tmp", ::getpid()));
    leftover_ = std::make_unique<Leftover>(path_);
    descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, everybody);
    if (descriptor_ < 0) {
        throwUnwritable(name_, errno);
    }
    if (replaces) {
        static_cast<void>(::fchmod(descriptor_, before.st_mode)); // a new file's mode does no harm
    }
}

void OutputFile::moveIntoPlace()
{
    if (direct_) {
        return;
    }
    if (::fsync(descriptor_) != 0) {
        throwUnwritable(name_, errno);
    }
    const unsigned flags = existing_ == Existing::Refuse ? RENAME_NOREPLACE : 0;
    int moved = ::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target_.c_str(), flags);
    if (moved != 0 && errno == EINVAL) { // the file system has no such flag
        moved = ::rename(path_.c_str(), target_.c_str());
    }
    if (moved != 0) {
        throwUnwritable(name_, errno);
    }
    leftover_.reset();
}

} // namespace tool
