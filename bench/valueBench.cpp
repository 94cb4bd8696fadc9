// Reading values of all six kinds: time against the number of rows, memory of big tables.
#include "cases.h"
#include "library.h"
#include "memory.h"
#include "scratch.h"
#include "tableFloor.h"

#include <map>
#include <optional>

namespace bench {

namespace {

namespace fs = std::filesystem;

/// A tree with one value, made when first asked for.
struct ValueTree {
    explicit ValueTree(const ValueShape& shape)
        : dataFile(generateValueTree(directory.path(), shape))
    {
    }
    ScratchDirectory directory { Place::memory };
    fs::path dataFile;
};

const ValueTree& valueTreeOf(const std::string& name, const ValueShape& shape)
{
    static std::map<std::string, ValueTree> trees;
    return trees.try_emplace(name, shape).first->second;
}

void readByLibrary(benchmark::State& state, const ValueTree& tree)
{
    const Database database(tree.directory.path());
    for (auto _ : state) {
        benchmark::DoNotOptimize(firstValue(database));
    }
}

void readByFloor(benchmark::State& state, const ValueTree& tree, ValueKind kind)
{
    TableFloor floor;
    for (auto _ : state) {
        benchmark::DoNotOptimize(floor.read(tree.dataFile, kind).values.get());
    }
}

void memoryKept(benchmark::State& state, const ValueTree& tree)
{
    const Database database(tree.directory.path());
    for (auto _ : state) {
        Value value;
        const MemoryUse use = memoryOf([&] { value = firstValue(database); }, [&] { value.reset(); });
        state.counters["kept_bytes"] = use.kept;
        state.counters["peak_bytes"] = use.peak;
    }
}

/// The bare rows.
void memoryOfRows(benchmark::State& state, const ValueTree& tree, ValueKind kind)
{
    TableFloor floor;
    for (auto _ : state) {
        const std::size_t count = floor.read(tree.dataFile, kind).count;
        state.counters["kept_bytes"] = static_cast<double>(count * sizeof(double));
    }
}

void addTime(const CaseName& name, const ValueShape& shape)
{
    const std::string key = name.job + name.shape;
    addCase(name, "floor",
        [=](benchmark::State& state) { readByFloor(state, valueTreeOf(key, shape), shape.kind); });
    addCase(name, "library", [=](benchmark::State& state) { readByLibrary(state, valueTreeOf(key, shape)); });
}

void addMemory(const CaseName& name, const ValueShape& shape)
{
    const std::string key = name.job + name.shape;
    const CaseName memory { name.job + ", memory", name.scale, name.shape };
    const auto add
        = [&](const char* way, auto body) { addCase(memory, way, body)->Iterations(1)->Repetitions(1); };
    add("floor", [=](benchmark::State& state) { memoryOfRows(state, valueTreeOf(key, shape), shape.kind); });
    add("library", [=](benchmark::State& state) { memoryKept(state, valueTreeOf(key, shape)); });
}

/// A thousand rows to each subtable of the big tables.
void addTables(const std::string& job, ValueKind kind)
{
    constexpr std::pair<Scale, long> sizes[] = { { Scale::small, 20 }, { Scale::small, 1000 },
        { Scale::medium, 30000 }, { Scale::large, 1000000 } };
    for (const auto& [scale, rows] : sizes) {
        const CaseName name { job, scale, "rows:" + std::to_string(rows) };
        const long subtables = rows > 1000 ? rows / 1000 : 4;
        const ValueShape shape = isTwoDimensional(kind) ? ValueShape { kind, subtables, rows / subtables }
                                                        : ValueShape { kind, 1, rows };
        addTime(name, shape);
        if (scale == Scale::large) {
            addMemory(name, shape);
        }
    }
}

} // namespace

void addValueCases()
{
    addTime({ "value constant", Scale::small, "numbers:1" }, { ValueKind::constant });
    addTime({ "value vector", Scale::small, "numbers:3" }, { ValueKind::constantVector });
    addTables("value table", ValueKind::table);
    addTables("value table of vectors", ValueKind::tableVector);
    addTables("value 2D table", ValueKind::table2D);
    addTables("value 2D table of vectors", ValueKind::table2DVector);
}

} // namespace bench
