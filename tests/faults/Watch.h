#pragma once

#include <cerrno>
#include <cstddef>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace test {

enum class Call {
    open,
    close,
    read,
    write,
    list,
    status,
    sync,
    mkdir,
    move,
    link,
    unlink,
    lock,
    truncate,
    watch
};
inline constexpr Call allCalls[]
    = { Call::open, Call::close, Call::read, Call::write, Call::list, Call::status, Call::sync, Call::mkdir,
          Call::move, Call::link, Call::unlink, Call::lock, Call::truncate, Call::watch };

/// A system call that is about to be made.
struct SystemCall {
    Call call {};
    int descriptor = -1; ///< the file, or the directory that `path` starts from
    const char* path = ""; ///< of a move or a link where it leads to
    int flags = 0; ///< of an open
    bool ofLog = false; ///< on the database's log
};

/// Stands between the library and the system while it lives: sees each system call and may answer it with an
/// error. For programs that are linked with Watch.cpp; one object at a time, for the thread that made it.
class Watch {
public:
    /// Returns the error number that the call fails with, 0 to let it through. A close that fails has closed
    /// all the same.
    using Rule = std::function<int(const SystemCall&)>;

    static constexpr std::size_t whole = std::numeric_limits<std::size_t>::max();

    /// No read or write moves more than `piece` bytes.
    explicit Watch(Rule rule, std::size_t piece = whole);
    ~Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    /// Ends the watch early.
    void stop();

    std::size_t calls = 0;
    std::size_t failed = 0;

    // For the functions that replace the system's.
    int answer(SystemCall call);
    std::size_t cut(std::size_t size) const { return size < piece_ ? size : piece_; }
    void opened(int descriptor);
    static Watch* current();

private:
    Rule rule_;
    std::size_t piece_;
    int log_ = -1;
    bool isLastOfLog_ = false;
};

/// How many descriptors the process has open.
std::size_t openDescriptors();

/// Which calls fail, and how.
struct Plan {
    std::size_t call = 1; ///< the first, counted from 1
    bool forGood = false; ///< and all after it
    int error = 0;
    bool ofLog = false; ///< of the calls on the log, else of all others
    bool isPlain = false; ///< on a file system without exclusive renames and hard links

    /// Counts the calls as it meets them.
    Watch::Rule rule() const;
    std::string text() const;
    /// True when the library must do all the same what it is asked for.
    bool isHarmless() const { return ofLog || (error == EINTR && !forGood); }
};

/// The error numbers that calls fail with; more of them in a long run.
const std::vector<int>& errorNumbers();

} // namespace test
