#include "support/Reliability.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>

namespace test {

namespace {

int failuresSoFar()
{
    const testing::TestResult& result = *testing::UnitTest::GetInstance()->current_test_info()->result();
    int failures = 0;
    for (int i = 0; i < result.total_part_count(); ++i) {
        failures += result.GetTestPartResult(i).failed() ? 1 : 0;
    }
    return failures;
}

} // namespace

bool isLongRun()
{
    const char* const value = std::getenv("QMDB_LONG");
    return value && std::string_view(value) == "1";
}

Reliability::~Reliability()
{
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start_;
    std::printf("reliability: %s: %zu cases, %d findings, %.1f s\n", name_.c_str(), cases, failuresSoFar(),
        time.count());
    std::fflush(stdout);
}

} // namespace test
