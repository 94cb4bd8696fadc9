#include "qm/CQMInputFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>

namespace qm {

CQMInputFile::CQMInputFile(const std::string& path, PathBase base)
    : file_(::openat(base.directory, CNativePath(path, base).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
{
}

ssize_t CQMInputFile::read(char* to, std::size_t size) noexcept
{
    ssize_t count = 0;
    do {
        count = ::read(file_.get(), to, size);
    } while (count < 0 && errno == EINTR);
    offset_ += std::max<ssize_t>(count, 0);
    return count;
}

std::size_t CQMInputFile::countLineEndsAhead() const
{
    std::array<char, 32 * 1024> piece;
    std::size_t lineEnds = 0;
    off_t at = offset_;
    for (ssize_t count = 0; (count = ::pread(file_.get(), piece.data(), piece.size(), at)) > 0; at += count) {
        lineEnds += static_cast<std::size_t>(std::count(piece.data(), piece.data() + count, '\n'));
    }
    return lineEnds;
}

} // namespace qm
