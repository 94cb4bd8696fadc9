#pragma once

#include "valueText.h"

#include <cstdint>
#include <filesystem>

namespace bench {

/// How many of each a tree holds. The same shape gives the same bytes on every machine.
struct TreeShape {
    long substances = 0;
    long phases = 2; ///< of each substance
    long phaseChanges = 1; ///< of each substance
    long phaseHeads = 4; ///< parameters of each phase
    long otherHeads = 3; ///< parameters of each substance; a phase change has one less
    long descriptions = 60;
    std::uint64_t seed = 1;

    auto operator<=>(const TreeShape&) const = default;
};

/// Files of a whole tree, data files included.
constexpr long fileCount(const TreeShape& shape) noexcept
{
    const long heads
        = shape.otherHeads + shape.phases * shape.phaseHeads + shape.phaseChanges * (shape.otherHeads - 1);
    const long descriptors = 1 + shape.phases + shape.phaseChanges;
    return shape.substances * (descriptors + 2 * heads) + shape.descriptions + 1;
}

/// Writes a whole database of made-up materials into an existing empty directory: about 30 files and
/// 4 directories for each substance of the default shape, one file in ten without the UTF-8 mark and
/// with CR LF, one name in four beyond ASCII, all six kinds of value in turn.
void generateTree(const std::filesystem::path& root, const TreeShape& shape);

/// Writes a database of one substance (ID 0) whose one phase (ID 0) has one parameter (ID 1) of the
/// given kind; returns the path of its data file.
std::filesystem::path generateValueTree(const std::filesystem::path& root, const ValueShape& shape);

} // namespace bench
