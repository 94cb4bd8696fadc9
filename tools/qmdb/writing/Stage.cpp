#include "writing/Stage.h"

#include "common/encodings.h"
#include "common/failure.h"
#include "writing/fileWriting.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool::writing {

namespace {

namespace fs = std::filesystem;

/// An absolute path without a separator at its end.
fs::path absolutePath(const std::string& name)
{
    std::error_code ignored;
    const fs::path path = fs::weakly_canonical(fs::absolute(toLocale(name)), ignored);
    return path.has_filename() ? path : path.parent_path();
}

std::string stagePrefix(const fs::path& target)
{
    return fmt::format(".{}.qmdb-import-", target.filename().native());
}

int lockedDirectory(const fs::path& path)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        ::close(descriptor);
        return -1;
    }
    return descriptor;
}

/// The same file under a second name, or a copy where the file system or its rules refuse that.
void linkFile(const fs::path& from, const fs::path& to)
{
    if (::linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), 0) != 0) {
        fs::copy(from, to, fs::copy_options::copy_symlinks);
    }
}

/// A directory with the owner and the rights of another.
void makeLike(const fs::path& from, const fs::path& to)
{
    struct stat status { };
    if (::stat(from.c_str(), &status) != 0) {
        throwSystemFailure("read", from);
    }
    if (::mkdir(to.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        throwSystemFailure("make", to);
    }
    const bool owned = ::chown(to.c_str(), status.st_uid, status.st_gid) == 0;
    static_cast<void>(owned); // a directory of one's own does as well
    if (::chmod(to.c_str(), status.st_mode | S_IRWXU) != 0) {
        throwSystemFailure("make", to);
    }
}

/// Gives a directory its rights when all is in it.
void copyMode(const fs::path& from, const fs::path& to)
{
    struct stat status { };
    if (::stat(from.c_str(), &status) == 0) {
        static_cast<void>(::chmod(to.c_str(), status.st_mode));
    }
}

void copyTree(const fs::path& from, const fs::path& to, const std::function<void()>& checkpoint)
{
    makeLike(from, to);
    for (const fs::directory_entry& entry : fs::directory_iterator(from)) {
        checkpoint();
        const fs::path place = to / entry.path().filename();
        const bool directory = entry.is_directory() && !entry.is_symlink();
        directory ? copyTree(entry.path(), place, checkpoint) : linkFile(entry.path(), place);
    }
}

} // namespace

Stage::Stage(const std::string& target)
{
    const fs::path path = absolutePath(target);
    target_ = path.native();
    exists_ = fs::exists(fs::symlink_status(path));
    if (exists_ && ::access(path.c_str(), W_OK) != 0) {
        throwSystemFailure("write", path);
    }
    path_ = (path.parent_path() / fmt::format("{}{}", stagePrefix(path), ::getpid())).native();
    if (::mkdir(path_.c_str(), S_IRWXU) != 0) {
        const int error = errno;
        throw Failure("cannot make a directory beside \"{}\", where the import is prepared: {}", target,
            std::strerror(error));
    }
    directory_ = fromLocale(path_.c_str());
    lock_ = lockedDirectory(path_);
}

Stage::~Stage()
{
    std::error_code ignored;
    fs::remove_all(path_, ignored);
    if (lock_ >= 0) {
        ::close(lock_);
    }
}

void Stage::removeRests(const std::string& target)
{
    std::error_code ignored;
    const fs::path path = absolutePath(target);
    const std::string prefix = stagePrefix(path);
    for (const auto& entry : fs::directory_iterator(path.parent_path(), ignored)) {
        if (!entry.path().filename().native().starts_with(prefix)) {
            continue;
        }
        if (const int lock = lockedDirectory(entry.path()); lock >= 0) { // nobody works there
            fs::remove_all(entry.path(), ignored);
            ::close(lock);
        }
    }
}

void Stage::copyTarget(const std::function<void()>& checkpoint)
{
    if (exists_) {
        copyTree(target_, path_, checkpoint);
    }
}

void Stage::moveIntoPlace()
{
    const fs::path target(target_);
    if (exists_) {
        copyMode(target, path_);
    } else {
        constexpr mode_t everybody = 0777;
        const mode_t mask = ::umask(0);
        ::umask(mask);
        static_cast<void>(::chmod(path_.c_str(), everybody & ~mask));
    }
    flushFileSystem(path_);
    const unsigned flags = exists_ ? RENAME_EXCHANGE : RENAME_NOREPLACE;
    if (::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target.c_str(), flags) != 0) {
        const int error = errno;
        throw Failure(
            "cannot put the import in the place of \"{}\" in one step: {}\nimport into a new directory, "
            "and move it where it should be",
            fromLocale(target.c_str()), std::strerror(error));
    }
    flushDirectory(target.parent_path());
}

} // namespace tool::writing
