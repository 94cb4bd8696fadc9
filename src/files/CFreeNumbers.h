#pragma once

#include <cstddef>
#include <set>

/// Which numbers, from 1 on, are free. Each operation takes logarithmic time, and numbers that are taken
/// without a gap take no memory.
class CFreeNumbers {
public:
    void reserve(std::size_t number);
    void release(std::size_t number);

    /// The smallest free number.
    std::size_t first() const noexcept { return gaps_.empty() ? end_ : *gaps_.begin(); }

private:
    std::size_t end_ = 1; ///< free; all before it are taken but for the gaps
    std::set<std::size_t> gaps_;
    std::set<std::size_t> beyond_; ///< those taken after `end_`
};
