#include "qm/CQMFileSystem.h"

#include "qm/EQMException.h"

#include <cerrno>
#include <span>
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

} // namespace

FileHandle CQMFileSystem::Open(const NativePath& path, int flags, mode_t mode)
{
    return FileHandle(::openat(path.directory, path.path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, mode));
}

FileHandle CQMFileSystem::OpenDirectory(const NativePath& path)
{
    return Open(path, O_RDONLY | O_DIRECTORY);
}

bool CQMFileSystem::Exists(const NativePath& path)
{
    struct stat status { };
    return ::fstatat(path.directory, path.path.c_str(), &status, 0) == 0;
}

bool CQMFileSystem::FileExists(const NativePath& path)
{
    return static_cast<bool>(Open(path, O_RDONLY));
}

void CQMFileSystem::MakeDir(const NativePath& path)
{
    if (::mkdirat(path.directory, path.path.c_str(), 0750) != 0) {
        ThrowMakeDirError(errno);
    }
}

void CQMFileSystem::RemoveFile(const NativePath& path)
{
    int result = ::unlinkat(path.directory, path.path.c_str(), 0);
    if (result != 0 && errno == EISDIR) {
        result = ::unlinkat(path.directory, path.path.c_str(), AT_REMOVEDIR);
    }
    if (result != 0) {
        throwFor(errno, removeFileErrors);
    }
}

void CQMFileSystem::TryRemoveFile(const NativePath& path) noexcept
{
    static_cast<void>(::unlinkat(path.directory, path.path.c_str(), 0));
}

bool CQMFileSystem::Flush(int descriptor) noexcept
{
    return ::fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP;
}

void CQMFileSystem::ThrowMakeDirError(int number)
{
    throwFor(number, makeDirErrors);
}

} // namespace qm
