// Asking for every list of a database once: substances, phases, phase changes, parameters.
#include "library.h"
#include "scratch.h"
#include "treeCases.h"

#include <cstring>
#include <functional>
#include <memory>
#include <vector>

namespace bench {

namespace {

/// Sees each list that the library hands out.
using Visit = std::function<void(const void* records, std::size_t bytes)>;

/// An array from the library, which goes back to it.
template <class Record, int (*destroy)(Record**)>
class Handed {
public:
    template <class Get>
    Handed(const Visit& visit, Get&& get)
    {
        const int code = get(&records_, &count_);
        if (code == QMDB_E_EMPTY) {
            return;
        }
        checked(code);
        visit(records_, static_cast<std::size_t>(count_) * sizeof(Record));
    }
    ~Handed() { destroy(&records_); }
    Handed(const Handed&) = delete;
    Handed& operator=(const Handed&) = delete;

    const Record* begin() const { return records_; }
    const Record* end() const { return records_ + count_; }

private:
    Record* records_ = nullptr;
    int count_ = 0;
};

using Matters = Handed<MATTER, qmdbDestroyMatterArray>;
using Phases = Handed<PHASE, qmdbDestroyPhasesArray>;
using PhaseChanges = Handed<PHASECHANGE, qmdbDestroyPhaseChangeArray>;
using Parameters = Handed<PARAMETER, qmdbDestroyParametersArray>;

void listAll(long id, const Visit& visit)
{
    for (const MATTER& matter : Matters(visit, [=](auto... out) { return qmdbGetMatters(id, out...); })) {
        Parameters(visit, [&](auto... out) { return qmdbGetMatterParams(id, matter.id, out...); });
        for (const PHASE& phase :
            Phases(visit, [&](auto... out) { return qmdbGetPhases(id, matter.id, out...); })) {
            Parameters(
                visit, [&](auto... out) { return qmdbGetPhaseParams(id, matter.id, phase.id, out...); });
        }
        for (const PHASECHANGE& change :
            PhaseChanges(visit, [&](auto... out) { return qmdbGetPhaseChanges(id, matter.id, out...); })) {
            Parameters(visit,
                [&](auto... out) { return qmdbGetPhaseChangeParams(id, matter.id, change.id, out...); });
        }
    }
}

void listByLibrary(benchmark::State& state, const TreeShape& shape)
{
    const Database database(treeOf(shape));
    for (auto _ : state) {
        listAll(database.id(), [](const void* records, std::size_t) { benchmark::DoNotOptimize(records); });
    }
}

/// The bytes of all lists are there already: only new arrays and the copying remain.
void copyLists(benchmark::State& state, const TreeShape& shape)
{
    std::vector<std::vector<char>> lists;
    {
        const Database database(treeOf(shape));
        listAll(database.id(), [&](const void* records, std::size_t bytes) {
            lists.emplace_back(static_cast<const char*>(records), static_cast<const char*>(records) + bytes);
        });
    }
    for (auto _ : state) {
        for (const std::vector<char>& list : lists) {
            const std::unique_ptr<char[]> copy(new char[list.size()]);
            std::memcpy(copy.get(), list.data(), list.size());
            benchmark::DoNotOptimize(copy.get());
        }
    }
}

} // namespace

void addListCases()
{
    for (const auto& [name, shape] : wholeTreeCases("list")) {
        const TreeShape tree = shape;
        addCase(name, "floor", [tree](benchmark::State& state) { copyLists(state, tree); });
        addCase(name, "library", [tree](benchmark::State& state) { listByLibrary(state, tree); });
    }
}

} // namespace bench
