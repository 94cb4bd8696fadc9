#pragma once

#include <functional>

namespace bench {

/// What a job takes from memory.
struct MemoryUse {
    double kept = 0; ///< bytes of the heap that it still holds afterwards
    double peak = 0; ///< most bytes of resident memory beyond those at the start
};

/// Runs the first function and measures what it takes, then the second, which gives it back.
MemoryUse memoryOf(const std::function<void()>& take, const std::function<void()>& giveBack);

} // namespace bench
