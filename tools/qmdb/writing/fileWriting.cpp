#include "writing/fileWriting.h"

#include "common/encodings.h"
#include "common/failure.h"
#include "common/leftovers.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace tool::writing {

namespace {

namespace fs = std::filesystem;

constexpr mode_t everybody = 0666; // less the user's mask
constexpr mode_t directoryMode = 0777;
constexpr int noEntry = -1;

/// An open file or directory.
class OpenFile {
public:
    OpenFile(const fs::path& path, int flags, mode_t mode = 0)
        : number_(::open(path.c_str(), flags | O_CLOEXEC, mode))
    {
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile()
    {
        if (isOpen()) {
            ::close(number_);
        }
    }

    bool isOpen() const noexcept { return number_ != noEntry; }
    int number() const noexcept { return number_; }

private:
    int number_;
};

bool writeAll(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written < 0 ? 0 : written));
    }
    return true;
}

/// A file beside its place, removed unless it is moved there.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& target)
        : target_(target)
    {
        // Names that an interrupted command has left are stepped over, as the library does.
        for (int number = 1; !file_ || (!file_->isOpen() && errno == EEXIST); ++number) {
            path_ = fmt::format("{}.{}.tmp", target.native(), number);
            file_.emplace(path_, O_WRONLY | O_CREAT | O_EXCL, everybody);
        }
        if (!file_->isOpen()) {
            throwSystemFailure("write", target_);
        }
        leftover_.emplace(path_);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        if (leftover_) {
            ::unlink(path_.c_str());
        }
    }

    void fill(std::string_view bytes)
    {
        struct stat before { };
        if (::stat(target_.c_str(), &before) == 0) {
            static_cast<void>(::fchmod(file_->number(), before.st_mode)); // a new file's mode does no harm
        }
        if (!writeAll(file_->number(), bytes) || ::fsync(file_->number()) != 0) {
            throwSystemFailure("write", target_);
        }
    }

    void moveIntoPlace(Existing existing)
    {
        const unsigned flags = existing == Existing::Refuse ? RENAME_NOREPLACE : 0;
        int moved = ::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target_.c_str(), flags);
        if (moved != 0 && flags != 0 && errno == EINVAL) { // the file system has no such flag
            moved = ::link(path_.c_str(), target_.c_str()) == 0 ? ::unlink(path_.c_str()) : moved;
        }
        if (moved != 0) {
            throwSystemFailure("write", target_);
        }
        leftover_.reset();
    }

private:
    const fs::path& target_;
    std::string path_;
    std::optional<OpenFile> file_;
    std::optional<Leftover> leftover_;
};

} // namespace

void throwSystemFailure(std::string_view what, const fs::path& path)
{
    const int error = errno;
    throw Failure("cannot {} \"{}\": {}", what, fromLocale(path.c_str()), std::strerror(error));
}

void writeWholeFile(const fs::path& path, std::string_view bytes, Existing existing)
{
    TemporaryFile file(path);
    file.fill(bytes);
    file.moveIntoPlace(existing);
    flushDirectory(path.parent_path());
}

void writeUnseenFile(const fs::path& path, std::string_view bytes)
{
    const OpenFile file(path, O_WRONLY | O_CREAT | O_EXCL, everybody);
    if (!file.isOpen() || !writeAll(file.number(), bytes)) {
        throwSystemFailure("write", path);
    }
}

void makeDirectory(const fs::path& path)
{
    if (::mkdir(path.c_str(), directoryMode) != 0) {
        throwSystemFailure("make", path);
    }
    flushDirectory(path.parent_path());
}

void removeFile(const fs::path& path)
{
    if (::unlink(path.c_str()) != 0) {
        throwSystemFailure("remove", path);
    }
    flushDirectory(path.parent_path());
}

void flushDirectory(const fs::path& path)
{
    const OpenFile directory(path, O_RDONLY | O_DIRECTORY);
    const bool flushed = directory.isOpen() && ::fsync(directory.number()) == 0;
    if (!flushed && errno != EINVAL
        && errno != EACCES) { // no such operation, or a directory only to write to
        throwSystemFailure("flush", path);
    }
}

void flushFileSystem(const fs::path& path)
{
    const OpenFile directory(path, O_RDONLY | O_DIRECTORY);
    if (!directory.isOpen() || ::syncfs(directory.number()) != 0) {
        throwSystemFailure("flush", path);
    }
}

} // namespace tool::writing
