#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace test {

/// True when the environment asks for a long run (QMDB_LONG=1).
bool isLongRun();

/// Counts the cases of a test. At the end it prints one line for scripts, which add up those of one name:
/// "reliability: NAME: N cases, M findings, S s".
class Reliability {
public:
    explicit Reliability(std::string name)
        : name_(std::move(name))
    {
    }
    ~Reliability();
    Reliability(const Reliability&) = delete;
    Reliability& operator=(const Reliability&) = delete;

    std::size_t cases = 0;

private:
    std::string name_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

} // namespace test
