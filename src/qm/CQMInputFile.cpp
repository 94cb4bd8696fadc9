#include "qm/CQMInputFile.h"

#include "qm/retry.h"

#include <sys/stat.h>
#include <unistd.h>

namespace qm {

CQMInputFile::CQMInputFile(const NativePath& path)
    : file_(CQMFileSystem::Open(path, O_RDONLY))
{
}

ssize_t CQMInputFile::read(std::span<char> to) noexcept
{
    return retried([&] { return ::read(file_.get(), to.data(), to.size()); });
}

std::size_t CQMInputFile::size() const noexcept
{
    struct stat status { };
    const bool isRegular = ::fstat(file_.get(), &status) == 0 && S_ISREG(status.st_mode);
    return isRegular ? static_cast<std::size_t>(status.st_size) : 0;
}

} // namespace qm
