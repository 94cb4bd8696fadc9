#pragma once

#include "treeGenerator.h"

#include <filesystem>

namespace bench {

/// Where a directory of a benchmark lies.
enum class Place {
    disk, ///< the directory for temporary files: $TMPDIR, else /tmp
    memory ///< $QMDB_BENCH_MEMORY, else /dev/shm; as `disk` where that is not to be written
};

std::filesystem::path pathOf(Place place);

/// An empty directory, removed with all that is in it at the end of its life.
class ScratchDirectory {
public:
    explicit ScratchDirectory(Place place);
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    const std::filesystem::path& path() const noexcept { return path_; }

private:
    std::filesystem::path path_;
};

/// Trees are made when first asked for and serve all cases; they go when the program ends.
const std::filesystem::path& treeOf(const TreeShape& shape, Place place = Place::memory);

} // namespace bench
