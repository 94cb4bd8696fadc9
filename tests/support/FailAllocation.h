#pragma once

namespace test {

/// Makes operator new fail while it lives: at its n-th call (from 0), or from there on for good.
/// For programs that are linked with FailAllocation.cpp; one object at a time.
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

} // namespace test
