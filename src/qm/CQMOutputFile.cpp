#include "qm/CQMOutputFile.h"

#include "qm/retry.h"

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
        const ssize_t written = retried([&] { return ::write(file, bytes.data(), bytes.size()); });
        if (written <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool writeInPlace(const NativePath& path, std::string_view bytes, int flags)
{
    CQMOutputFile file(path, flags);
    if (!file.isOpen()) {
        return false;
    }
    file.append(bytes);
    return file.finish();
}

/// A link may have made its file in another directory, which the caller does not flush.
bool flushWhereLinksLead(const NativePath& path)
{
    return !CQMFileSystem::IsLink(path) || CQMFileSystem::FlushDirectoryOf(CQMFileSystem::FollowLinks(path));
}

/// A file beside its target, removed unless it is moved there.
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
        return file_ && writeAll(file_.get(), bytes) && CQMFileSystem::FlushFile(file_.get());
    }

    MoveResult moveIntoPlace() noexcept
    {
        const MoveResult result = CQMFileSystem::MoveToFreePlace(own_, target_);
        moved_ = result == MoveResult::Moved;
        return result;
    }

private:
    const NativePath& target_;
    NativePath own_;
    FileHandle file_;
    bool moved_ = false;
};

} // namespace

CQMOutputFile::CQMOutputFile(NativePath path, int flags)
    : path_(std::move(path))
    , file_(CQMFileSystem::Open(path_, writingFlags | flags, newFileMode))
{
}

CQMOutputFile::~CQMOutputFile()
{
    if (!finished_) {
        discard();
    }
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
    finished_ = good_ && CQMFileSystem::FlushFile(file_.get()) && flushWhereLinksLead(path_);
    return finished_;
}

void CQMOutputFile::discard() noexcept
{
    struct stat status { };
    if (!file_ || ::fstat(file_.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return; // a device is not this library's to remove
    }
    if (CQMFileSystem::IsLink(path_)) {
        static_cast<void>(retried([&] { return ::ftruncate(file_.get(), 0); }));
    } else {
        CQMFileSystem::TryRemoveFile(path_);
    }
}

void CQMOutputFile::writeOut()
{
    good_ = good_ && writeAll(file_.get(), pending_);
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
    switch (file.moveIntoPlace()) {
    case MoveResult::Moved:
        return true;
    case MoveResult::Occupied:
        return CQMFileSystem::IsLink(path) && writeInPlace(path, bytes, O_TRUNC);
    case MoveResult::Unsupported:
        return writeInPlace(path, bytes, O_EXCL);
    case MoveResult::Failed:
        break;
    }
    return false;
}

void appendToFile(const NativePath& path, std::string_view bytes)
{
    const FileHandle file = CQMFileSystem::Open(path, writingFlags | O_APPEND | O_NOFOLLOW, newFileMode);
    if (file) {
        static_cast<void>(writeAll(file.get(), bytes));
    }
}

} // namespace qm
