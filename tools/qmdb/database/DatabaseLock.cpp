#include "database/DatabaseLock.h"

#include "common/encodings.h"
#include "common/failure.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace tool {

DatabaseLock::DatabaseLock(const std::string& directory)
    : descriptor_(::open(toLocale(directory).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    if (descriptor_ < 0) {
        throw Failure("cannot open \"{}\": {}", directory, std::strerror(errno));
    }
    if (::flock(descriptor_, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) {
        return; // a file system without locks has no other holder to wait for
    }
    fmt::print(stderr, "qmdb: note: waiting for another command that changes \"{}\"\n", directory);
    while (::flock(descriptor_, LOCK_EX) != 0 && errno == EINTR) { }
}

DatabaseLock::~DatabaseLock()
{
    ::close(descriptor_);
}

} // namespace tool
