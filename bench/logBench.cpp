// Opening with the informational log: one open-write-close to each line.
#include "library.h"
#include "qm/handles.h"
#include "scratch.h"
#include "treeCases.h"

#include <fcntl.h>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

namespace {

namespace fs = std::filesystem;

constexpr const char* logName = "qmdb.log";

std::vector<std::string> linesOfLog(const fs::path& root)
{
    const Database database(root, true);
    std::ifstream log(root / logName);
    std::vector<std::string> lines;
    for (std::string line; std::getline(log, line);) {
        lines.push_back(line + "\n");
    }
    return lines;
}

void appendAlone(const fs::path& file, std::string_view line)
{
    const qm::FileHandle log(::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666));
    if (::write(log.get(), line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

void openQuietly(benchmark::State& state, const TreeShape& shape)
{
    const fs::path& root = treeOf(shape);
    const std::vector<std::string> lines = linesOfLog(root);
    for (auto _ : state) {
        const Database database(root); // deletes the log of the open before
        for (const std::string& line : lines) {
            appendAlone(root / logName, line);
        }
    }
    fs::remove(root / logName);
}

void openWithLog(benchmark::State& state, const TreeShape& shape)
{
    const fs::path& root = treeOf(shape);
    for (auto _ : state) {
        const Database database(root, true);
    }
    fs::remove(root / logName);
}

} // namespace

void addLogCases()
{
    for (const TreeCase& tree : wholeTreeCases("log")) {
        if (tree.name.scale == Scale::large) {
            continue;
        }
        const TreeShape shape = tree.shape;
        addCase(tree.name, "floor", [shape](benchmark::State& state) { openQuietly(state, shape); });
        addCase(tree.name, "library", [shape](benchmark::State& state) { openWithLog(state, shape); });
    }
}

} // namespace bench
