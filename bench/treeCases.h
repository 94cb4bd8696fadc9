#pragma once

#include "cases.h"
#include "treeGenerator.h"

#include <array>

namespace bench {

struct TreeCase {
    CaseName name;
    TreeShape shape;
};

/// Trees of more and more substances, for a job that is done on a whole database.
inline std::array<TreeCase, 3> wholeTreeCases(const std::string& job)
{
    const auto treeCase = [&](Scale scale, int substances) {
        const TreeShape shape { .substances = substances };
        const std::string text
            = "substances:" + std::to_string(substances) + ",files:" + std::to_string(fileCount(shape));
        return TreeCase { { job, scale, text }, shape };
    };
    return { treeCase(Scale::small, 100), treeCase(Scale::medium, 1000), treeCase(Scale::large, 10000) };
}

} // namespace bench
