#pragma once

#include <chrono>
#include <cstddef>

namespace tool {

/// A line on standard error that counts substances, once the work has taken longer than a second and
/// where standard error is a terminal. It is gone at the end.
class Progress {
public:
    explicit Progress(std::size_t total);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    /// One more substance is done.
    void step();

private:
    using Clock = std::chrono::steady_clock;

    std::size_t total_;
    std::size_t done_ = 0;
    bool terminal_;
    bool shown_ = false;
    Clock::time_point next_;
};

} // namespace tool
