#include "qm/CQMFileSystem.h"

#include "qm/CNativePath.h"
#include "qm/CQMInputFile.h"
#include "qm/EQMException.h"

#include <cerrno>
#include <cstdio>
#include <span>
#include <sys/stat.h>

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

PathParts CQMFileSystem::SplitPath(std::string_view path, bool dropPoint) noexcept
{
    const std::size_t separator = path.find_last_of("/\\");
    const std::size_t start = separator == std::string_view::npos ? 0 : separator + 1;
    PathParts parts;
    parts.dir = start >= 2 ? path.substr(0, separator) : std::string_view();
    parts.name = path.substr(start);
    const std::size_t point = parts.name.rfind('.');
    if (point != std::string_view::npos) {
        parts.ext = parts.name.substr(dropPoint ? point + 1 : point);
        parts.name = parts.name.substr(0, point);
    }
    return parts;
}

std::string_view CQMFileSystem::ExtractDir(std::string_view path) noexcept
{
    return SplitPath(path, false).dir;
}

std::string_view CQMFileSystem::ExtractName(std::string_view path) noexcept
{
    return SplitPath(path, false).name;
}

bool CQMFileSystem::Exists(const std::string& path)
{
    struct stat status { };
    return ::stat(CNativePath(path).c_str(), &status) == 0;
}

bool CQMFileSystem::FileExists(const std::string& path)
{
    return CQMInputFile(path).isOpen();
}

void CQMFileSystem::MakeDir(const std::string& path, const CQMDirectory& parent)
{
    const PathBase base = parent.base();
    if (::mkdirat(base.directory, CNativePath(path, base).c_str(), 0750) != 0 || !parent.flush()) {
        throwFor(errno, makeDirErrors);
    }
}

void CQMFileSystem::RemoveFile(const std::string& path)
{
    if (std::remove(CNativePath(path).c_str()) != 0) {
        throwFor(errno, removeFileErrors);
    }
}

} // namespace qm
