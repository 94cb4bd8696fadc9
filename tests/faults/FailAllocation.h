#pragma once

namespace test {

/// Makes allocations fail while it lives: the n-th (from 0), or all from there on. Those of the C library
/// too, or, where a sanitizer has taken its functions, only operator new. One object at a time.
class FailAllocation {
public:
    enum class Mode { once, forGood };

    FailAllocation(long call, Mode mode);
    ~FailAllocation();
    FailAllocation(const FailAllocation&) = delete;
    FailAllocation& operator=(const FailAllocation&) = delete;

    /// True when an allocation has failed.
    bool fired() const;
};

/// For the functions that replace the usual ones.
bool allocationFails() noexcept;

/// True when the program is built with sanitizers, which look for leaks themselves.
extern const bool isSanitized;

/// How many blocks are allocated; 0 under sanitizers.
long liveBlocks();

} // namespace test
