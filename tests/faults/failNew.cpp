// operator new, for programs in which a sanitizer has replaced malloc.

#include "faults/FailAllocation.h"

#include <cstdlib>
#include <new>

namespace {

void* allocate(std::size_t size) noexcept
{
    if (test::allocationFails()) {
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

const bool isSanitized = true;

long liveBlocks()
{
    return 0;
}

} // namespace test
