#include "durability/Tracer.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace test {

namespace {

using Registers = user_regs_struct;

constexpr int endMark = -12345; // closing this descriptor does nothing
constexpr int syscallStop = SIGTRAP | 0x80;
constexpr unsigned childSeconds = 60; // should a fault make it run for ever
enum Exit { exitNotPermitted = 77, exitThrown = 78 };

// Failing allocations are another subject, and the sanitizers have business of their own.
constexpr long neverFailing[]
    = { SYS_brk, SYS_mmap, SYS_munmap, SYS_mremap, SYS_mprotect, SYS_madvise, SYS_futex, SYS_rt_sigaction,
          SYS_rt_sigprocmask, SYS_sigaltstack, SYS_gettid, SYS_prlimit64, SYS_pipe, SYS_pipe2 };

bool canFail(const SystemCall& call)
{
    return std::ranges::count(neverFailing, call.number) == 0 && !call.path.starts_with("pipe:")
        && !call.path.starts_with("/proc/");
}

bool isEndMark(const Registers& registers)
{
    return registers.orig_rax == SYS_close && static_cast<int>(registers.rdi) == endMark;
}

class Watcher {
public:
    Watcher(pid_t child, const Plan& plan, Trace& trace)
        : files_("/proc/" + std::to_string(child))
        , child_(child)
        , plan_(plan)
        , trace_(trace)
    {
    }

    /// Returns when the child has ended; after the stretch it is left alone.
    void run()
    {
        ::ptrace(PTRACE_SETOPTIONS, child_, 0, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
        for (bool isEntry = true; !trace_.isFinished && goToNextStop(); isEntry = !isEntry) {
            Registers registers {};
            ::ptrace(PTRACE_GETREGS, child_, 0, &registers);
            isEntry ? onEntry(registers) : onExit(registers);
        }
        if (trace_.isFinished) {
            ::ptrace(PTRACE_DETACH, child_, 0, 0);
            ::waitpid(child_, &trace_.status, 0);
        }
    }

private:
    bool goToNextStop()
    {
        for (int signal = 0;; signal = WSTOPSIG(trace_.status)) {
            ::ptrace(PTRACE_SYSCALL, child_, 0, signal);
            if (::waitpid(child_, &trace_.status, 0) != child_ || !WIFSTOPPED(trace_.status)) {
                return false;
            }
            if (WSTOPSIG(trace_.status) == syscallStop) {
                return true;
            }
        }
    }

    void onEntry(Registers& registers)
    {
        trace_.isFinished = isEndMark(registers);
        if (trace_.isFinished) {
            return;
        }
        const SystemCall& call = trace_.calls.emplace_back(describe(registers));
        isStruck_ = isDue(call);
        error_ = isStruck_ && plan_.fault == Fault::error ? plan_.error : unsupported(call.number);
        if (isStruck_) {
            trace_.struck = call;
        }
        if (isStruck_ && plan_.fault == Fault::killBefore) {
            ::kill(child_, SIGKILL);
        } else if (error_ != 0 && call.number != SYS_close) { // one that fails has closed all the same
            registers.orig_rax = static_cast<unsigned long long>(-1); // no such call
        } else if (isStruck_ && plan_.fault == Fault::killAfter && call.number == SYS_write) {
            registers.rdx /= 2;
        }
        ::ptrace(PTRACE_SETREGS, child_, 0, &registers);
    }

    void onExit(Registers& registers)
    {
        if (isStruck_ && plan_.fault == Fault::killAfter) {
            ::kill(child_, SIGKILL);
        } else if (error_ != 0) {
            registers.rax = static_cast<unsigned long long>(-error_);
            ::ptrace(PTRACE_SETREGS, child_, 0, &registers);
        }
        trace_.calls.back().result = static_cast<long>(registers.rax);
    }

    /// Counts the call, too.
    bool isDue(const SystemCall& call)
    {
        return (plan_.fault != Fault::error || canFail(call)) && ++counted_ == plan_.call;
    }

    /// The error number of a call that the file system does not know, else 0.
    int unsupported(long number) const
    {
        if (number == SYS_renameat2 && plan_.fileSystem != FileSystem::usual) {
            return EINVAL;
        }
        return number == SYS_linkat && plan_.fileSystem == FileSystem::plain ? EPERM : 0;
    }

    SystemCall describe(const Registers& registers) const
    {
        SystemCall call { static_cast<long>(registers.orig_rax), registers.rdx, {}, {}, 0 };
        switch (call.number) {
        case SYS_mkdir:
            call.path = textAt(registers.rdi);
            break;
        case SYS_renameat2:
            call.target = pathOf(registers.rdx) / textAt(registers.r10);
            [[fallthrough]];
        case SYS_openat:
        case SYS_newfstatat:
        case SYS_mkdirat:
        case SYS_unlinkat:
            call.path = pathOf(registers.rdi) / textAt(registers.rsi); // an absolute path stays as it is
            break;
        case SYS_close:
        case SYS_fsync:
        case SYS_getdents64:
        case SYS_read:
        case SYS_write:
            call.path = pathOf(registers.rdi);
        }
        return call;
    }

    std::string textAt(unsigned long long address) const
    {
        std::ifstream memory(files_ / "mem", std::ios::binary);
        memory.seekg(static_cast<std::streamoff>(address));
        std::string text;
        std::getline(memory, text, '\0');
        return text;
    }

    /// Empty when the descriptor is none.
    fs::path pathOf(unsigned long long descriptor) const
    {
        std::error_code ignored;
        return fs::read_symlink(files_ / "fd" / std::to_string(static_cast<int>(descriptor)), ignored);
    }

    fs::path files_;
    pid_t child_;
    const Plan& plan_;
    Trace& trace_;
    std::size_t counted_ = 0;
    bool isStruck_ = false;
    int error_ = 0;
};

[[noreturn]] void runChild(const std::function<int()>& body)
{
    ::alarm(childSeconds);
    int status = exitThrown;
    try {
        status = body();
    } catch (const std::exception& exception) {
        std::puts(exception.what());
    }
    std::fflush(stdout);
    ::_exit(status);
}

} // namespace

void beginWatched()
{
    if (::ptrace(PTRACE_TRACEME, 0, 0, 0) != 0) {
        ::_exit(exitNotPermitted);
    }
    ::kill(::getpid(), SIGSTOP);
}

void endWatched()
{
    ::close(endMark);
}

Trace trace(const Plan& plan, const std::function<int()>& body)
{
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child == 0) {
        runChild(body);
    }
    Trace result;
    ::waitpid(child, &result.status, 0);
    if (WIFSTOPPED(result.status)) {
        Watcher(child, plan, result).run();
    }
    return result;
}

bool isTracingPermitted()
{
    const Trace result = trace({}, [] {
        beginWatched();
        endWatched();
        return 0;
    });
    return result.isFinished && result.status == 0;
}

std::string toText(const Trace& trace)
{
    const SystemCall call = trace.struck.value_or(SystemCall {});
    return "system call number " + std::to_string(call.number) + " on \"" + call.path + "\"";
}

} // namespace test
