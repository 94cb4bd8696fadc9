#include "scratch.h"

#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace bench {

namespace fs = std::filesystem;

fs::path pathOf(Place place)
{
    const char* const chosen = std::getenv("QMDB_BENCH_MEMORY");
    const fs::path memory = chosen ? chosen : "/dev/shm";
    return place == Place::memory && ::access(memory.c_str(), W_OK) == 0 ? memory : fs::temp_directory_path();
}

ScratchDirectory::ScratchDirectory(Place place)
{
    std::string name = pathOf(place) / "qmdb_bench.XXXXXX";
    if (!::mkdtemp(name.data())) {
        throw std::runtime_error("cannot make " + name);
    }
    path_ = name;
}

ScratchDirectory::~ScratchDirectory()
{
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

const fs::path& treeOf(const TreeShape& shape, Place place)
{
    static std::map<std::pair<TreeShape, Place>, ScratchDirectory> trees;
    const auto [tree, isNew] = trees.try_emplace({ shape, place }, place);
    if (isNew) {
        generateTree(tree->second.path(), shape);
    }
    return tree->second.path();
}

} // namespace bench
