#include "qm/CQMOutputFile.h"

#include "qm/CNativePath.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

namespace qm {

namespace {

constexpr mode_t newFileMode = 0666; // before the umask
constexpr std::size_t pieceSize = 65536;
// Not waiting matters for a FIFO at the path: opening it then fails instead of hanging the host.
constexpr int writingFlags = O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK;

bool writeAll(int file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool writeInPlace(const std::string& path, std::string_view bytes, PathBase base)
{
    CQMOutputFile file(path, base);
    if (!file.isOpen()) {
        return false;
    }
    file.append(bytes);
    return file.finish();
}

bool isLink(int directory, const std::string& name)
{
    struct stat status { };
    return ::fstatat(directory, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
}

/// A file under a name that no scan of the database matches; removed unless it was moved away.
class TemporaryFile {
public:
    TemporaryFile(std::string target, int directory)
        : target_(std::move(target))
        , directory_(directory)
    {
        // Names that an interrupted addition has left are stepped over.
        for (int number = 1; !file_ && number < 1000; ++number) {
            name_ = target_ + "." + std::to_string(number) + ".tmp";
            file_ = FileHandle(::openat(directory_, name_.c_str(), writingFlags | O_EXCL, newFileMode));
            if (!file_ && errno != EEXIST) {
                return;
            }
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        if (file_ && !moved_) {
            ::unlinkat(directory_, name_.c_str(), 0);
        }
    }

    bool fill(std::string_view bytes)
    {
        return file_ && writeAll(file_.get(), bytes) && flushToDisk(file_.get());
    }

    bool moveIntoPlace()
    {
        if (::renameat2(directory_, name_.c_str(), directory_, target_.c_str(), RENAME_NOREPLACE) == 0) {
            moved_ = true;
            return true;
        }
        // File systems without the operation; the destructor takes the second name away.
        return (errno == EINVAL || errno == ENOSYS)
            && ::linkat(directory_, name_.c_str(), directory_, target_.c_str(), 0) == 0;
    }

private:
    std::string target_;
    int directory_;
    std::string name_;
    FileHandle file_;
    bool moved_ = false;
};

} // namespace

CQMOutputFile::CQMOutputFile(const std::string& path, PathBase base)
    : file_(::openat(base.directory, CNativePath(path, base).c_str(), writingFlags | O_TRUNC, newFileMode))
{
}

void CQMOutputFile::append(std::string_view bytes)
{
    pending_ += bytes;
    if (pending_.size() >= pieceSize) {
        writeOut();
    }
}

bool CQMOutputFile::finish()
{
    writeOut();
    return flushToDisk(file_.get()) && good_;
}

void CQMOutputFile::writeOut()
{
    good_ = writeAll(file_.get(), pending_) && good_;
    pending_.clear();
}

bool writeWholeFile(const std::string& path, std::string_view bytes, const CQMDirectory& directory)
{
    const PathBase base = directory.base();
    const std::string target = CNativePath(path, base).c_str();
    if (target.empty()) {
        return false;
    }
    {
        TemporaryFile file(target, base.directory);
        if (!file.fill(bytes)) {
            return false;
        }
        if (!file.moveIntoPlace()) {
            return errno == EEXIST && isLink(base.directory, target) && writeInPlace(path, bytes, base);
        }
    }
    if (!directory.flush()) {
        ::unlinkat(base.directory, target.c_str(), 0);
        return false;
    }
    return true;
}

void appendToFile(const std::string& path, std::string_view bytes)
{
    const FileHandle file(::open(CNativePath(path).c_str(), writingFlags | O_APPEND, newFileMode));
    if (file) {
        static_cast<void>(writeAll(file.get(), bytes));
    }
}

} // namespace qm
