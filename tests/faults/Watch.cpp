#include "faults/Watch.h"

#include "support/Reliability.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <string_view>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <utility>

namespace test {

namespace {

thread_local Watch* current = nullptr;

/// Makes the call unless the watch answers it.
template <class Forward>
auto watched(const SystemCall& call, Forward&& forward)
{
    if (Watch* const watch = Watch::current()) {
        if (const int error = watch->answer(call); error != 0) {
            errno = error;
            return decltype(forward()) { -1 };
        }
    }
    return forward();
}

int watchedOpen(int directory, const char* path, int flags, mode_t mode)
{
    const int result = watched({ Call::open, directory, path, flags },
        [&] { return static_cast<int>(::syscall(SYS_openat, directory, path, flags, mode)); });
    if (Watch* const watch = Watch::current()) {
        watch->opened(result);
    }
    return result;
}

std::size_t cut(std::size_t size)
{
    const Watch* const watch = Watch::current();
    return watch ? watch->cut(size) : size;
}

template <class... Arguments>
auto systemCall(const SystemCall& call, long number, Arguments... arguments)
{
    return watched(call, [&] { return ::syscall(number, arguments...); });
}

template <class... Arguments>
int plainCall(const SystemCall& call, long number, Arguments... arguments)
{
    return static_cast<int>(systemCall(call, number, arguments...));
}

} // namespace

Watch::Watch(Rule rule, std::size_t piece)
    : rule_(std::move(rule))
    , piece_(piece)
{
    test::current = this;
}

Watch::~Watch()
{
    stop();
}

void Watch::stop()
{
    test::current = nullptr;
}

Watch* Watch::current()
{
    return test::current;
}

int Watch::answer(SystemCall call)
{
    constexpr std::string_view logName = "qmdb.log";
    const std::string_view path = call.path;
    call.ofLog = path.empty() ? call.descriptor == log_ : path.ends_with(logName);
    isLastOfLog_ = call.ofLog;
    if (call.call == Call::close && call.ofLog) {
        log_ = -1;
    }
    ++calls;
    test::current = nullptr; // the rule may make calls of its own
    const int error = rule_(call);
    test::current = this;
    failed += error != 0 ? 1 : 0;
    return error;
}

void Watch::opened(int descriptor)
{
    log_ = isLastOfLog_ ? descriptor : log_;
}

std::size_t openDescriptors()
{
    const auto entries = std::filesystem::directory_iterator("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

Watch::Rule Plan::rule() const
{
    return [plan = *this, counted = std::size_t { 0 }](const SystemCall& call) mutable {
        if (call.ofLog != plan.ofLog) {
            return 0;
        }
        if (plan.isPlain && (call.call == Call::move || call.call == Call::link)) {
            return call.call == Call::move ? EINVAL : EPERM;
        }
        ++counted;
        return counted == plan.call || (plan.forGood && counted > plan.call) ? plan.error : 0;
    };
}

std::string Plan::text() const
{
    return std::string(ofLog ? "log " : "") + "call " + std::to_string(call)
        + (forGood ? " and all after it: " : ": ") + std::strerror(error);
}

const std::vector<int>& errorNumbers()
{
    static const std::vector<int> numbers = [] {
        std::vector<int> found = { EIO, ENOSPC, EDQUOT, EACCES, EMFILE, EINTR, ENOMEM };
        if (isLongRun()) {
            // Not those that say "there is no such file", of which ENAMETOOLONG is one.
            found.insert(found.end(), { ENFILE, EROFS, EPERM, ESTALE, ENXIO, EFBIG, EBUSY });
        }
        return found;
    }();
    return numbers;
}

} // namespace test

using namespace test;

// In place of the C library's functions: the dynamic linker finds a program's own ones first.
extern "C" {

int openat(int directory, const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t); // anything when no mode is given, and not looked at then
    va_end(arguments);
    return watchedOpen(directory, path, flags, mode);
}

int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    return watchedOpen(AT_FDCWD, path, flags, mode);
}

int close(int file)
{
    const SystemCall call { Call::close, file };
    if (Watch* const watch = Watch::current()) {
        if (const int error = watch->answer(call); error != 0) {
            ::syscall(SYS_close, file);
            errno = error;
            return -1;
        }
    }
    return static_cast<int>(::syscall(SYS_close, file));
}

ssize_t read(int file, void* buffer, size_t size)
{
    return systemCall({ Call::read, file }, SYS_read, file, buffer, cut(size));
}

ssize_t write(int file, const void* bytes, size_t size)
{
    return systemCall({ Call::write, file }, SYS_write, file, bytes, cut(size));
}

ssize_t getdents64(int directory, void* buffer, size_t size) noexcept
{
    return systemCall({ Call::list, directory }, SYS_getdents64, directory, buffer, size);
}

int fstatat(int directory, const char* path, struct stat* status, int flags) noexcept
{
    return plainCall({ Call::status, directory, path }, SYS_newfstatat, directory, path, status, flags);
}

int fstat(int file, struct stat* status) noexcept
{
    return plainCall({ Call::status, file }, SYS_fstat, file, status);
}

ssize_t readlinkat(int directory, const char* path, char* buffer, size_t size) noexcept
{
    return systemCall({ Call::status, directory, path }, SYS_readlinkat, directory, path, buffer, size);
}

int fsync(int file)
{
    return plainCall({ Call::sync, file }, SYS_fsync, file);
}

int mkdirat(int directory, const char* path, mode_t mode) noexcept
{
    return plainCall({ Call::mkdir, directory, path }, SYS_mkdirat, directory, path, mode);
}

int renameat2(int from, const char* source, int to, const char* target, unsigned flags) noexcept
{
    return plainCall({ Call::move, to, target }, SYS_renameat2, from, source, to, target, flags);
}

int linkat(int from, const char* source, int to, const char* target, int flags) noexcept
{
    return plainCall({ Call::link, to, target }, SYS_linkat, from, source, to, target, flags);
}

int unlinkat(int directory, const char* path, int flags) noexcept
{
    return plainCall({ Call::unlink, directory, path }, SYS_unlinkat, directory, path, flags);
}

int flock(int file, int operation) noexcept
{
    return plainCall({ Call::lock, file }, SYS_flock, file, operation);
}

int ftruncate(int file, off_t size) noexcept
{
    return plainCall({ Call::truncate, file }, SYS_ftruncate, file, size);
}

int fstatfs(int file, struct statfs* status) noexcept
{
    return plainCall({ Call::status, file }, SYS_fstatfs, file, status);
}

int inotify_init1(int flags) noexcept
{
    return plainCall({ Call::watch }, SYS_inotify_init1, flags);
}

int inotify_add_watch(int watches, const char* path, uint32_t events) noexcept
{
    // The path names an open directory, in a way of its own.
    return plainCall({ Call::watch, watches }, SYS_inotify_add_watch, watches, path, events);
}

int inotify_rm_watch(int watches, int watch) noexcept
{
    return plainCall({ Call::watch, watches }, SYS_inotify_rm_watch, watches, watch);
}

} // extern "C"
