// The C library's allocation functions, for programs that no sanitizer has put its own into.

#include "faults/FailAllocation.h"

#include <cstddef>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void __libc_free(void* memory);
}

namespace {

long live = 0;

void* counted(void* memory) noexcept
{
    live += memory ? 1 : 0;
    return memory;
}

} // namespace

extern "C" {

void* malloc(std::size_t size) noexcept
{
    return test::allocationFails() ? nullptr : counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) noexcept
{
    return test::allocationFails() ? nullptr : counted(__libc_calloc(count, size));
}

void* realloc(void* memory, std::size_t size) noexcept
{
    if (test::allocationFails()) {
        return nullptr;
    }
    live -= memory ? 1 : 0;
    return counted(__libc_realloc(memory, size));
}

void free(void* memory) noexcept
{
    live -= memory ? 1 : 0;
    __libc_free(memory);
}

} // extern "C"

namespace test {

const bool isSanitized = false;

long liveBlocks()
{
    return live;
}

} // namespace test
