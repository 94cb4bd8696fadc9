#include "database/DatabaseLock.h"

#include "common/encodings.h"
#include "common/failure.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tool {

namespace {

int openDirectory(const std::string& directory)
{
    const int descriptor = ::open(toLocale(directory).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        throw Failure("cannot open \"{}\": {}", directory, std::strerror(errno));
    }
    return descriptor;
}

/// Waits for another holder, with a note. A file system without locks has none to wait for.
void lock(int descriptor, const std::string& directory)
{
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) {
        return;
    }
    fmt::print(stderr, "qmdb: note: waiting for another command that changes \"{}\"\n", directory);
    while (::flock(descriptor, LOCK_EX) != 0 && errno == EINTR) { }
}

/// False when another directory has taken the place of the open one, as an import lets it.
bool isStillThere(int descriptor, const std::string& directory)
{
    struct stat open { };
    struct stat there { };
    return ::fstat(descriptor, &open) == 0 && ::stat(toLocale(directory).c_str(), &there) == 0
        && open.st_ino == there.st_ino && open.st_dev == there.st_dev;
}

} // namespace

DatabaseLock::DatabaseLock(const std::string& directory)
    : descriptor_(openDirectory(directory))
{
    lock(descriptor_, directory);
    while (!isStillThere(descriptor_, directory)) {
        ::close(std::exchange(descriptor_, -1));
        descriptor_ = openDirectory(directory);
        lock(descriptor_, directory);
    }
}

DatabaseLock::~DatabaseLock()
{
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

} // namespace tool
