#include "qm/CQMFileSystem.h"

#include "qm/EQMException.h"
#include "qm/retry.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <span>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace qm {

namespace {

struct ErrorMapping {
    int number;
    ErrorCode code;
};

constexpr ErrorMapping makeDirErrors[] = {
    { EFAULT, ErrorCode::InvalidArgument },
    { ENOTDIR, ErrorCode::InvalidArgument },
    { ENAMETOOLONG, ErrorCode::InvalidArgument },
    { EIO, ErrorCode::FileOperationFailed },
    { ENOSPC, ErrorCode::FileOperationFailed },
    { ENOENT, ErrorCode::NotFound },
    { EEXIST, ErrorCode::AlreadyExists },
    { EPERM, ErrorCode::AccessDenied },
    { EACCES, ErrorCode::AccessDenied },
    { EROFS, ErrorCode::AccessDenied },
};

constexpr ErrorMapping removeFileErrors[] = {
    { ENOENT, ErrorCode::NotFound },
    { EACCES, ErrorCode::AccessDenied },
};

[[noreturn]] void throwFor(int number, std::span<const ErrorMapping> mappings)
{
    for (const ErrorMapping& mapping : mappings) {
        if (mapping.number == number) {
            throw EQMException(mapping.code);
        }
    }
    throw EQMException(ErrorCode::FileOperationFailed, number);
}

/// A path as one system call takes it: a long one is walked to its last part, which opens a directory or
/// more on the way.
class ShortPath {
public:
    explicit ShortPath(const NativePath& path) noexcept
        : directory_(path.directory)
        , rest_(path.path.c_str())
    {
        for (std::size_t length = path.path.size(); length >= PATH_MAX && walk(length);) {
            length = path.path.size() - static_cast<std::size_t>(rest_ - path.path.c_str());
        }
    }

    int directory() const noexcept { return directory_; }
    const char* rest() const noexcept { return rest_; }

private:
    /// Walks as far as fits; false where the path cannot be cut or the system refuses it.
    bool walk(std::size_t length) noexcept
    {
        const std::string_view piece(rest_, std::min<std::size_t>(length, PATH_MAX - 1));
        const std::size_t end = piece.rfind('/');
        if (end == std::string_view::npos || end == 0) {
            return false;
        }
        std::array<char, PATH_MAX> way; // no string, as there may be no memory
        *std::copy_n(piece.begin(), end, way.begin()) = '\0';
        FileHandle next(
            retried([&] { return ::openat(directory_, way.data(), O_PATH | O_DIRECTORY | O_CLOEXEC); }));
        if (!next) {
            return false;
        }
        walked_ = std::move(next);
        directory_ = walked_.get();
        rest_ += end;
        while (*rest_ == '/') {
            ++rest_;
        }
        return true;
    }

    FileHandle walked_;
    int directory_;
    const char* rest_;
};

bool isRegular(const ShortPath& path)
{
    struct stat status { };
    return ::fstatat(path.directory(), path.rest(), &status, 0) == 0 && S_ISREG(status.st_mode);
}

int open(const ShortPath& path, int flags, mode_t mode)
{
    return retried([&] { return ::openat(path.directory(), path.rest(), flags, mode); });
}

/// Error numbers of a file system that does not know an operation.
bool isUnknownOperation(int number)
{
    return number == EINVAL || number == ENOSYS || number == ENOTSUP;
}

} // namespace

FileHandle CQMFileSystem::Open(const NativePath& path, int flags, mode_t mode)
{
    const ShortPath way(path);
    flags |= O_CLOEXEC | O_NOCTTY; // a terminal in a tree must not become the host's
    int descriptor = open(way, flags | O_NONBLOCK, mode);
    if (descriptor < 0 && errno == EWOULDBLOCK && isRegular(way)) {
        descriptor = open(way, flags, mode); // it is leased, and the lease's holder gives it up
    }
    return FileHandle(descriptor);
}

FileHandle CQMFileSystem::OpenDirectory(const NativePath& path)
{
    return Open(path, O_RDONLY | O_DIRECTORY);
}

bool CQMFileSystem::Exists(const NativePath& path)
{
    const ShortPath way(path);
    struct stat status { };
    return retried([&] { return ::fstatat(way.directory(), way.rest(), &status, 0); }) == 0;
}

bool CQMFileSystem::IsFree(const NativePath& path)
{
    if (Exists(path)) {
        return false;
    }
    if (!IsAbsence(errno)) {
        throw EQMException(ErrorCode::FileOperationFailed, errno);
    }
    return true;
}

bool CQMFileSystem::IsAbsence(int number) noexcept
{
    return number == ENOENT || number == ENOTDIR || number == ELOOP || number == ENAMETOOLONG;
}

bool CQMFileSystem::IsLink(const NativePath& path)
{
    const ShortPath way(path);
    struct stat status { };
    return retried([&] { return ::fstatat(way.directory(), way.rest(), &status, AT_SYMLINK_NOFOLLOW); }) == 0
        && S_ISLNK(status.st_mode);
}

NativePath CQMFileSystem::FollowLinks(NativePath path)
{
    constexpr int mostLinks = 40; // as many as the system follows
    std::array<char, PATH_MAX> target;
    for (int links = 0; links <= mostLinks; ++links) {
        const ShortPath way(path);
        const ssize_t size = retried(
            [&] { return ::readlinkat(way.directory(), way.rest(), target.data(), target.size()); });
        if (size < 0) {
            return errno == EINVAL || errno == ENOENT ? path : NativePath {};
        }
        const std::string_view text(target.data(), static_cast<std::size_t>(size));
        const std::size_t start = text.starts_with('/') ? 0 : path.path.rfind('/') + 1;
        path.path.replace(start, std::string::npos, text);
    }
    return {};
}

bool CQMFileSystem::FileExists(const NativePath& path)
{
    return static_cast<bool>(Open(path, O_RDONLY));
}

void CQMFileSystem::MakeDir(const NativePath& path)
{
    const ShortPath way(path);
    if (retried([&] { return ::mkdirat(way.directory(), way.rest(), 0750); }) != 0) {
        ThrowMakeDirError(errno);
    }
}

void CQMFileSystem::RemoveFile(const NativePath& path)
{
    const ShortPath way(path);
    int result = retried([&] { return ::unlinkat(way.directory(), way.rest(), 0); });
    if (result != 0 && errno == EISDIR) {
        result = retried([&] { return ::unlinkat(way.directory(), way.rest(), AT_REMOVEDIR); });
    }
    if (result != 0) {
        throwFor(errno, removeFileErrors);
    }
}

void CQMFileSystem::TryRemoveFile(const NativePath& path) noexcept
{
    const ShortPath way(path);
    static_cast<void>(retried([&] { return ::unlinkat(way.directory(), way.rest(), 0); }));
}

MoveResult CQMFileSystem::MoveToFreePlace(const NativePath& from, const NativePath& to) noexcept
{
    const ShortPath source(from);
    const ShortPath target(to);
    const auto move = [&] {
        return ::renameat2(
            source.directory(), source.rest(), target.directory(), target.rest(), RENAME_NOREPLACE);
    };
    const auto link
        = [&] { return ::linkat(source.directory(), source.rest(), target.directory(), target.rest(), 0); };
    if (retried(move) == 0) {
        return MoveResult::Moved;
    }
    if (isUnknownOperation(errno) && retried(link) == 0) {
        TryRemoveFile(from);
        return MoveResult::Moved;
    }
    if (errno == EEXIST) {
        return MoveResult::Occupied;
    }
    // EPERM is what file systems without hard links answer.
    return isUnknownOperation(errno) || errno == EPERM ? MoveResult::Unsupported : MoveResult::Failed;
}

bool CQMFileSystem::FlushFile(int descriptor) noexcept
{
    return retried([&] { return ::fsync(descriptor); }) == 0 || errno == EINVAL || errno == ENOTSUP;
}

bool CQMFileSystem::FlushDirectory(int descriptor) noexcept
{
    return retried([&] { return ::fsync(descriptor); }) == 0 || isUnknownOperation(errno) || errno == ENOTTY
        || errno == EBADF;
}

bool CQMFileSystem::FlushDirectoryOf(const NativePath& path)
{
    if (path.path.empty()) {
        return false;
    }
    const std::size_t end = path.path.rfind('/');
    const FileHandle directory = OpenDirectory({ path.directory,
        end == std::string::npos ? "." : path.path.substr(0, std::max<std::size_t>(end, 1)) });
    return directory ? FlushDirectory(directory.get()) : errno == EACCES;
}

void CQMFileSystem::ThrowMakeDirError(int number)
{
    throwFor(number, makeDirErrors);
}

} // namespace qm
