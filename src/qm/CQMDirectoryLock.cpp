#include "qm/CQMDirectoryLock.h"

#include "qm/retry.h"

#include <sys/file.h>

namespace qm {

CQMDirectoryLock::CQMDirectoryLock(int directory) noexcept
    : directory_(directory)
{
    if (directory_ >= 0 && retried([this] { return ::flock(directory_, LOCK_EX); }) != 0) {
        directory_ = -1;
    }
}

CQMDirectoryLock::~CQMDirectoryLock()
{
    if (directory_ >= 0) {
        ::flock(directory_, LOCK_UN); // a child process may hold the directory open as well
    }
}

} // namespace qm
