#include "annotations/InputFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool {

InputFile::InputFile(const std::string& path)
    : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
{
}

InputFile::~InputFile()
{
    if (isOpen()) {
        ::close(descriptor_);
    }
}

bool InputFile::isPlain() const noexcept
{
    struct stat status { };
    return ::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
}

bool InputFile::feed(format::CLineCutter& lines) const noexcept
{
    const auto room = lines.room();
    ssize_t count = 0;
    do {
        count = ::read(descriptor_, room.data(), room.size());
    } while (count < 0 && errno == EINTR);
    if (count >= 0) {
        lines.received(static_cast<std::size_t>(count));
    }
    return count >= 0;
}

} // namespace tool
