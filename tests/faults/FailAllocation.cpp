#include "faults/FailAllocation.h"

#include <cerrno>

namespace test {

namespace {

bool armed = false;
bool forGood = false;
bool hasFired = false;
long callsLeft = 0;

} // namespace

bool allocationFails() noexcept
{
    if (!armed || callsLeft-- > 0) {
        return false;
    }
    armed = forGood;
    hasFired = true;
    errno = ENOMEM;
    return true;
}

FailAllocation::FailAllocation(long call, Mode mode)
{
    callsLeft = call;
    forGood = mode == Mode::forGood;
    hasFired = false;
    armed = true;
}

FailAllocation::~FailAllocation()
{
    armed = false;
}

bool FailAllocation::fired() const
{
    return hasFired;
}

} // namespace test
