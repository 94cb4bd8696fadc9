#pragma once

#include "durability/Tracer.h"
#include "support/additionKinds.h"

namespace test {

/// The base of tests that need ptrace, with one kind of addition.
class Traced : public testing::TestWithParam<Addition> {
protected:
    void SetUp() override
    {
        if (!isTracingPermitted()) {
            GTEST_SKIP() << "ptrace is not permitted here";
        }
    }
};

} // namespace test
