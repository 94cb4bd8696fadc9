#pragma once

#include <chrono>
#include <cstddef>
#include <string_view>

namespace tool {

/// A line on standard error that counts what is done, once the work has taken longer than a second and
/// where standard error is a terminal. It is gone at the end.
class Progress {
public:
    explicit Progress(std::size_t total, std::string_view what = "substances");
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    /// One more is done.
    void step();

private:
    using Clock = std::chrono::steady_clock;

    std::size_t total_;
    std::string_view what_;
    std::size_t done_ = 0;
    bool terminal_;
    bool shown_ = false;
    Clock::time_point next_;
};

} // namespace tool
