#pragma once

#include "valueText.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <vector>

namespace bench {

/// The numbers of a data file, row after row; the first arguments of subtables are left out.
struct Numbers {
    std::unique_ptr<double[]> values;
    std::size_t count = 0;
};

/// The least that turns a data file into numbers: open, read in pieces that stay in the cache, parse
/// each number where it stands with the fastest parser there is, close. Nothing is checked.
class TableFloor {
public:
    Numbers read(const std::filesystem::path& file, ValueKind kind);

private:
    std::vector<char> piece_ = std::vector<char>(256 * 1024);
};

} // namespace bench
