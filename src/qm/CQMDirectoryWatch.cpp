#include "qm/CQMDirectoryWatch.h"

#include "qm/retry.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <linux/magic.h>
#include <string>
#include <sys/types.h>
#include <sys/vfs.h>

namespace qm {

namespace {

constexpr std::uint32_t watchedEvents
    = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_ONLYDIR;
constexpr std::size_t longestEvent = sizeof(inotify_event) + NAME_MAX + 1;

// Those that <linux/magic.h> does not list.
constexpr std::uint32_t zfsMagic = 0x2FC12FC1;
constexpr std::uint32_t bcachefsMagic = 0xCA451A4E;

/// True for file systems whose directories only this machine changes.
bool isLocal(int directory) noexcept
{
    constexpr std::uint32_t local[] = { EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC, BTRFS_SUPER_MAGIC, TMPFS_MAGIC,
        F2FS_SUPER_MAGIC, OVERLAYFS_SUPER_MAGIC, RAMFS_MAGIC, zfsMagic, bcachefsMagic };
    struct statfs status { };
    return retried([&] { return ::fstatfs(directory, &status); }) == 0
        && std::ranges::find(local, static_cast<std::uint32_t>(status.f_type)) != std::end(local);
}

} // namespace

CQMDirectoryWatch::CQMDirectoryWatch() noexcept
    : handle_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
}

int CQMDirectoryWatch::add(int directory) noexcept
{
    if (!handle_ || !isLocal(directory)) {
        return -1;
    }
    // By this path the very directory that is open is watched, wherever it has been moved.
    std::array<char, 32> path {};
    std::snprintf(path.data(), path.size(), "/proc/self/fd/%d", directory);
    return ::inotify_add_watch(handle_.get(), path.data(), watchedEvents);
}

void CQMDirectoryWatch::remove(int watch) noexcept
{
    static_cast<void>(::inotify_rm_watch(handle_.get(), watch));
}

bool CQMDirectoryWatch::fill() noexcept
{
    if (drained_) {
        drained_ = false;
        return false;
    }
    const ssize_t count = retried([this] { return ::read(handle_.get(), buffer_.data(), buffer_.size()); });
    failed_ = count == 0 || (count < 0 && errno != EAGAIN);
    if (count <= 0) {
        return false;
    }
    size_ = static_cast<std::size_t>(count);
    drained_ = buffer_.size() - size_ > longestEvent; // one more would have fitted
    return true;
}

CQMDirectoryWatch::Change CQMDirectoryWatch::changeOf(const inotify_event& event) noexcept
{
    const std::uint32_t mask = event.mask;
    const std::string_view name = event.len > 0 ? std::string_view(event.name) : std::string_view();
    const Kind kind = mask & IN_Q_OVERFLOW   ? Kind::Overflow
        : mask & (IN_CREATE | IN_MOVED_TO)   ? Kind::Appeared
        : mask & (IN_DELETE | IN_MOVED_FROM) ? Kind::Gone
                                             : Kind::Lost;
    return { kind, event.wd, (mask & IN_ISDIR) != 0, name };
}

} // namespace qm
