#include "qm/CQMOutputFile.h"

#include <cerrno>
#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace qm {

namespace {

constexpr mode_t newFileMode = 0666; // before the umask
constexpr std::size_t pieceSize = 65536;
constexpr int writingFlags = O_WRONLY | O_CREAT;

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

bool writeInPlace(const NativePath& path, std::string_view bytes)
{
    CQMOutputFile file(path);
    if (!file.isOpen()) {
        return false;
    }
    file.append(bytes);
    return file.finish();
}

bool isLink(const NativePath& path)
{
    struct stat status { };
    return ::fstatat(path.directory, path.path.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0
        && S_ISLNK(status.st_mode);
}

/// A file beside its target, removed unless it was moved there.
class TemporaryFile {
public:
    TemporaryFile(const NativePath& target, std::string_view ending)
        : target_(target)
        , own_(target)
    {
        // Names that an interrupted addition has left are stepped over.
        for (int number = 1; !file_ && number < 1000; ++number) {
            own_.path = target_.path + "." + std::to_string(number) + std::string(ending);
            file_ = CQMFileSystem::Open(own_, writingFlags | O_EXCL, newFileMode);
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
            CQMFileSystem::TryRemoveFile(own_);
        }
    }

    bool fill(std::string_view bytes)
    {
        return file_ && writeAll(file_.get(), bytes) && CQMFileSystem::Flush(file_.get());
    }

    bool moveIntoPlace()
    {
        if (::renameat2(
                own_.directory, own_.path.c_str(), target_.directory, target_.path.c_str(), RENAME_NOREPLACE)
            == 0) {
            moved_ = true;
            return true;
        }
        // File systems without the operation; the destructor takes the second name away.
        return (errno == EINVAL || errno == ENOSYS)
            && ::linkat(own_.directory, own_.path.c_str(), target_.directory, target_.path.c_str(), 0) == 0;
    }

private:
    const NativePath& target_;
    NativePath own_;
    FileHandle file_;
    bool moved_ = false;
};

} // namespace

CQMOutputFile::CQMOutputFile(const NativePath& path)
    : file_(CQMFileSystem::Open(path, writingFlags | O_TRUNC, newFileMode))
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
    return CQMFileSystem::Flush(file_.get()) && good_;
}

void CQMOutputFile::writeOut()
{
    good_ = writeAll(file_.get(), pending_) && good_;
    pending_.clear();
}

bool writeWholeFile(const NativePath& path, std::string_view bytes, std::string_view temporaryEnding)
{
    if (path.path.empty()) {
        return false; // a name that the locale cannot convert
    }
    TemporaryFile file(path, temporaryEnding);
    if (!file.fill(bytes)) {
        return false;
    }
    return file.moveIntoPlace() || (errno == EEXIST && isLink(path) && writeInPlace(path, bytes));
}

void appendToFile(const NativePath& path, std::string_view bytes)
{
    const FileHandle file = CQMFileSystem::Open(path, writingFlags | O_APPEND, newFileMode);
    if (file) {
        static_cast<void>(writeAll(file.get(), bytes));
    }
}

} // namespace qm
