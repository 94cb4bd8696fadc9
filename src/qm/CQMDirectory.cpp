#include "qm/CQMDirectory.h"

#include <cerrno>

namespace qm {

CQMDirectory::CQMDirectory(const std::string& path, PathBase base)
    : handle_(::openat(
        base.directory, CNativePath(path, base).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK))
    , openError_(handle_ ? 0 : errno)
    , nameAt_(path.size() + 1)
{
}

bool CQMDirectory::flush() const noexcept
{
    if (isOpen()) {
        return flushToDisk(descriptor());
    }
    errno = openError_;
    return openError_ == EACCES;
}

bool flushToDisk(int descriptor) noexcept
{
    return ::fsync(descriptor) == 0 || errno == EINVAL || errno == ENOTSUP;
}

} // namespace qm
