#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace test {

struct SystemCall {
    long number = 0;
    unsigned long flags = 0; ///< the third argument: of an open its flags
    std::string path; ///< the file that the call is about
    std::string target; ///< the new name in a rename
    long result = 0;
};

/// What happens to the process at one of its system calls.
enum class Fault {
    none,
    killBefore,
    killAfter, ///< a write gets only halfway
    error,
};

/// What the file system seems to offer for moving a file to where nothing stands.
enum class FileSystem {
    usual,
    withoutExclusiveRename,
    plain, ///< without hard links, too
};

struct Plan {
    Fault fault = Fault::none;
    std::size_t call = 0; ///< counted from 1; for errors without the calls that manage memory
    int error = 0;
    FileSystem fileSystem = FileSystem::usual;
};

struct Trace {
    std::vector<SystemCall> calls; ///< of the watched stretch
    std::optional<SystemCall> struck; ///< the first call that a fault met; none when there were fewer
    bool isFinished = false; ///< the stretch was watched to its end
    int status = 0; ///< as waitpid gives it
};

/// Runs `body` in a child process and watches the system calls of a stretch of it, by ptrace. What
/// `body` returns is the child's exit status.
Trace trace(const Plan& plan, const std::function<int()>& body);

/// The bounds of the watched stretch, called by the body once each.
void beginWatched();
void endWatched();

bool isTracingPermitted();

/// The struck call, for messages.
std::string toText(const Trace& trace);

} // namespace test
