// Opening a database: cost against the number of substances and of phases, closing, memory.
#include "library.h"
#include "memory.h"
#include "scratch.h"
#include "treeCases.h"
#include "treeWalk.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <optional>

namespace bench {

namespace {

double secondsToClose(Database& database)
{
    const auto start = std::chrono::steady_clock::now();
    database.close();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void openByLibrary(benchmark::State& state, const TreeShape& shape, Place place)
{
    const auto& root = treeOf(shape, place);
    double closing = std::numeric_limits<double>::max();
    for (auto _ : state) {
        Database database(root);
        state.PauseTiming();
        closing = std::min(closing, secondsToClose(database));
        state.ResumeTiming();
    }
    state.counters["close_seconds"] = closing;
}

void walk(benchmark::State& state, const TreeShape& shape, Place place, Reading reading)
{
    const auto& root = treeOf(shape, place);
    for (auto _ : state) {
        benchmark::DoNotOptimize(walkTree(root, reading));
    }
}

void memoryKept(benchmark::State& state, const TreeShape& shape)
{
    const auto& root = treeOf(shape);
    for (auto _ : state) {
        std::optional<Database> database;
        const MemoryUse use = memoryOf([&] { database.emplace(root); }, [&] { database.reset(); });
        state.counters["kept_bytes"] = use.kept;
        state.counters["peak_bytes"] = use.peak;
    }
}

/// Names and contents in one block, four numbers for a file, one begin and two sizes for an entry.
void memoryOfArena(benchmark::State& state, const TreeShape& shape)
{
    constexpr long perFile = 20;
    constexpr long perEntry = 8;
    for (auto _ : state) {
        const WalkTotals totals = walkTree(treeOf(shape), Reading::cut);
        state.counters["kept_bytes"] = static_cast<double>(
            totals.nameBytes + totals.contentBytes + totals.files * perFile + totals.entries * perEntry);
    }
}

void addTime(const CaseName& name, const TreeShape& shape, Place place)
{
    addCase(name, "calls", [=](benchmark::State& state) { walk(state, shape, place, Reading::discard); });
    addCase(name, "floor", [=](benchmark::State& state) { walk(state, shape, place, Reading::cut); });
    addCase(name, "library", [=](benchmark::State& state) { openByLibrary(state, shape, place); });
}

void addMemory(const CaseName& name, const TreeShape& shape)
{
    const CaseName memory { name.job + ", memory", name.scale, name.shape };
    const auto add
        = [&](const char* way, auto body) { addCase(memory, way, body)->Iterations(1)->Repetitions(1); };
    add("floor", [=](benchmark::State& state) { memoryOfArena(state, shape); });
    add("library", [=](benchmark::State& state) { memoryKept(state, shape); });
}

} // namespace

void addOpenCases()
{
    for (const auto& [name, shape] : wholeTreeCases("open")) {
        addTime(name, shape, Place::memory);
        addMemory(name, shape);
    }
    // The same from the disk, all of it in the system's caches.
    const TreeCase onDisk = wholeTreeCases("open on disk")[1];
    addTime(onDisk.name, onDisk.shape, Place::disk);
    constexpr std::pair<Scale, long> sizes[]
        = { { Scale::small, 100 }, { Scale::medium, 1000 }, { Scale::large, 10000 } };
    for (const auto& [scale, phases] : sizes) {
        addTime({ "open one substance", scale, "phases:" + std::to_string(phases) },
            { .substances = 1, .phases = phases, .phaseChanges = 0, .phaseHeads = 1 }, Place::memory);
    }
}

} // namespace bench
