#include "support/FailAllocation.h"

#include <cstdlib>
#include <new>

namespace {

bool armed = false;
bool forGood = false;
bool hasFired = false;
long callsLeft = 0;

void* allocate(std::size_t size) noexcept
{
    if (armed && callsLeft-- <= 0) {
        armed = forGood;
        hasFired = true;
        return nullptr;
    }
    return std::malloc(size > 0 ? size : 1);
}

void* allocateOrThrow(std::size_t size)
{
    if (void* const memory = allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

} // namespace

// All forms are replaced: sanitizers bring their own for each that is missing here.
void* operator new(std::size_t size)
{
    return allocateOrThrow(size);
}
void* operator new[](std::size_t size)
{
    return allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

namespace test {

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
