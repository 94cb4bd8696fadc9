#pragma once

#include <limits>
#include <stdexcept>

/// The ID after the highest one in use. Throws when there is none: IDs never wrap round.
inline long nextId(long highest)
{
    if (highest == std::numeric_limits<long>::max()) {
        throw std::overflow_error("No free ID is left");
    }
    return highest + 1;
}
