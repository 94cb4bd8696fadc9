#include "qm/CQMOutputFile.h"

#include "qm/CNativePath.h"
#include "qm/CQMFileSystem.h"
#include "qm/CQMTranscoder.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>

namespace qm {

namespace {

constexpr mode_t newFileMode = 0666; // before the umask
constexpr std::size_t pieceSize = 64 * 1024;
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

/// Flushes, where the file system has the operation.
bool flush(int file)
{
    return ::fsync(file) == 0 || errno == EINVAL || errno == ENOTSUP;
}

bool writeInPlace(const std::string& name, std::string_view bytes)
{
    const FileHandle file(::open(name.c_str(), writingFlags | O_TRUNC, newFileMode));
    return file && writeAll(file.get(), bytes) && flush(file.get());
}

/// A file under a name that no scan of the database matches; removed unless it was moved away.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& target)
    {
        // Names that an interrupted addition has left are stepped over.
        for (int number = 1; !file_ && number < 1000; ++number) {
            name_ = target + "." + std::to_string(number) + ".tmp";
            file_ = FileHandle(::open(name_.c_str(), writingFlags | O_EXCL, newFileMode));
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
            ::unlink(name_.c_str());
        }
    }

    bool fill(std::string_view bytes) { return file_ && writeAll(file_.get(), bytes) && flush(file_.get()); }

    bool moveTo(const std::string& target)
    {
        if (::renameat2(AT_FDCWD, name_.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
            moved_ = true;
            return true;
        }
        // File systems without the operation; the destructor takes the second name away.
        return (errno == EINVAL || errno == ENOSYS) && ::link(name_.c_str(), target.c_str()) == 0;
    }

private:
    std::string name_;
    FileHandle file_;
    bool moved_ = false;
};

} // namespace

CQMOutputFile::CQMOutputFile(const std::string& path)
    : file_(::open(CNativePath(path).c_str(), writingFlags | O_TRUNC, newFileMode))
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
    return flush(file_.get()) && good_;
}

void CQMOutputFile::writeOut()
{
    good_ = writeAll(file_.get(), pending_) && good_;
    pending_.clear();
}

bool writeWholeFile(const std::string& path, std::string_view bytes)
{
    const std::string target = CQMTranscoder::TextToAnsi(path);
    struct stat status { };
    if (target.empty() || ::lstat(target.c_str(), &status) == 0) {
        return writeInPlace(target, bytes);
    }
    {
        TemporaryFile file(target);
        if (!file.fill(bytes) || !file.moveTo(target)) {
            return false;
        }
    }
    if (!flushDirectory(CQMFileSystem::ExtractDir(path))) {
        ::unlink(target.c_str());
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

bool flushDirectory(std::string_view directory)
{
    const std::string name = directory.empty() ? "." : CQMTranscoder::TextToAnsi(directory);
    const FileHandle handle(::open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return handle ? flush(handle.get()) : errno == EACCES;
}

} // namespace qm
