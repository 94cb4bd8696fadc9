#pragma once

#include "support/TempDatabase.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace test {

/// One kind of addition to `durableBase`.
struct Addition {
    const char* name;
    /// Adds the first or the second entity of the kind; returns the function's code.
    int (*add)(long database, int number);
};

/// For the names of tests.
std::ostream& operator<<(std::ostream& out, const Addition& addition);
std::string additionName(const testing::TestParamInfo<Addition>& info);

extern const Tree durableBase;
/// Substance, mixture, phase, phase change, the six kinds of value, and a value whose data file is a link.
extern const std::vector<Addition> additions;

/// Gives a phase to every substance that has none, as reopening skips it otherwise.
void addMissingPhases(long database);

/// What a database shows that is opened anew, new substances included.
std::string reopened(const TempDatabase& tree);

/// What has become of the files of `durableBase`: empty when all are as they were.
std::string damage(const TempDatabase& tree);

/// A listing without the value of the parameter that the first addition makes.
std::string withoutFirstValue(std::string listing);

/// What reopening shows when nothing goes wrong.
struct Listings {
    explicit Listings(const Addition& addition);

    std::string before;
    std::string first;
    std::string second; ///< only the second entity was added
    std::string both;
};

} // namespace test
