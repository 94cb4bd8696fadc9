#include "qm/CQMDirectoryScanner.h"

#include "qm/CQMFileSystem.h"
#include "qm/retry.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>

namespace qm {

namespace {

/// The directory test is a bit test, which block devices and sockets pass as well.
constexpr mode_t directoryBit = 0x4000;

bool isSelfOrParent(std::string_view name)
{
    return name == "." || name == "..";
}

} // namespace

bool CQMDirectoryScanner::GetNext() noexcept
{
    for (;;) {
        if (at_ == end_) {
            // The plain call instead of opendir, which asks for the directory's status every time.
            const ssize_t size
                = retried([this] { return ::getdents64(directory_, buffer_.data(), buffer_.size()); });
            if (size <= 0) {
                error_ = size == 0 ? 0 : errno;
                return false;
            }
            at_ = 0;
            end_ = static_cast<std::size_t>(size);
        }
        const auto& entry = *reinterpret_cast<const dirent64*>(buffer_.data() + at_);
        at_ += entry.d_reclen;
        name_ = entry.d_name;
        if (!isSelfOrParent(name_)) {
            isRegular_ = entry.d_type == DT_REG;
            kind_ = kindOf(entry);
            mayBeLink_ = entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN;
            return true;
        }
    }
}

CQMDirectoryScanner::Kind CQMDirectoryScanner::kindOf(const dirent64& entry) const noexcept
{
    switch (entry.d_type) {
    case DT_DIR:
    case DT_BLK:
    case DT_SOCK:
        return Kind::Directory;
    case DT_LNK:
    case DT_UNKNOWN:
        break;
    default:
        return Kind::File;
    }
    struct stat status { };
    if (retried([&] { return ::fstatat(directory_, entry.d_name, &status, 0); }) != 0) {
        return CQMFileSystem::IsAbsence(errno) ? Kind::Missing : Kind::Unknown;
    }
    return status.st_mode & directoryBit ? Kind::Directory : Kind::File;
}

} // namespace qm
