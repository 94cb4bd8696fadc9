// Additions: substances and phases against the number of those present, parameters; in memory, and on
// the disk, where flushing is what costs.
#include "additionFloor.h"
#include "cases.h"
#include "library.h"
#include "scratch.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace bench {

namespace {

using std::to_string;

/// The first additions to a directory stay out of the figures: they collect the names in use, list the
/// directory and begin to watch it.
constexpr long unmeasured = 2;

/// Additions of one kind to a database that is the same before each run.
struct Series {
    CaseName name;
    Place place = Place::memory;
    TreeShape shape;
    std::function<Addition(const std::string& root, long number)> files; ///< of the addition of a number
    std::function<void(long database, long number)> byLibrary;

    /// One at a time on the disk: the best of several then shows it free of other programs' writing.
    int length() const { return place == Place::disk ? 1 : 64; }
};

/// Takes the files of a series away, in whatever way they were made.
class Cleaner {
public:
    Cleaner(const Series& series, const std::string& root)
    {
        for (long number = 0; number < series.length() + unmeasured; ++number) {
            additions_.push_back(series.files(root, number));
        }
    }
    ~Cleaner() { std::for_each(additions_.begin(), additions_.end(), remove); }
    Cleaner(const Cleaner&) = delete;
    Cleaner& operator=(const Cleaner&) = delete;

    const Addition& operator[](std::size_t number) const { return additions_[number]; }

private:
    std::vector<Addition> additions_;
};

void addByLibrary(benchmark::State& state, const Series& series)
{
    const auto& root = treeOf(series.shape, series.place);
    const Cleaner cleaner(series, root);
    const Database database(root);
    long number = 0;
    for (; number < unmeasured; ++number) {
        series.byLibrary(database.id(), number);
    }
    for (auto _ : state) {
        series.byLibrary(database.id(), number++);
    }
}

void addByFloor(benchmark::State& state, const Series& series, Extra extra)
{
    const Cleaner additions(series, treeOf(series.shape, series.place));
    std::size_t number = 0;
    for (; number < unmeasured; ++number) {
        make(additions[number], extra);
    }
    for (auto _ : state) {
        make(additions[number++], extra);
    }
}

void addWays(const Series& series)
{
    const bool onDisk = series.place == Place::disk;
    const auto add = [&](const char* way, auto body) {
        auto* const added = addCase(series.name, way, body)->Iterations(series.length());
        if (onDisk) {
            added->Repetitions(40)->UseRealTime(); // nearly all of it is waiting
        }
    };
    // In memory flushes do nothing and the least leaves them out. On the disk they belong to it, since the
    // library promises that what it adds is there.
    add(onDisk ? "unflushed" : "floor",
        [=](benchmark::State& state) { addByFloor(state, series, Extra::none); });
    add(onDisk ? "floor" : "flushed",
        [=](benchmark::State& state) { addByFloor(state, series, Extra::flushes); });
    if (!onDisk) {
        add("listed", [=](benchmark::State& state) { addByFloor(state, series, Extra::listing); });
    }
    add("library", [=](benchmark::State& state) { addByLibrary(state, series); });
}

template <std::size_t size>
void setText(wchar_t (&field)[size], const std::string& text)
{
    std::copy_n(text.begin(), std::min(text.size(), size - 1), field);
}

Addition newEntity(
    const std::string& parent, const std::string& name, const char* extension, const char* bytes)
{
    const std::string directory = parent + "/" + name;
    return { parent, directory, { { directory + "/" + name + extension, bytes } } };
}

Series substances(Scale scale, long present, Place place)
{
    Series series;
    const std::string where = place == Place::disk ? " on disk" : "";
    series.name = { "add substance" + where, scale, "substances:" + to_string(present) };
    series.place = place;
    series.shape
        = { .substances = present, .phases = 1, .phaseChanges = 0, .phaseHeads = 0, .otherHeads = 0 };
    series.files = [=](const std::string& root, long number) {
        return newEntity(root, "Substance" + to_string(present + number + 1), ".mtd",
            "\xEF\xBB\xBF"
            "Comment=Reference data\nCommentID=35\nComposition=\nID=17\nMixture=0\nName=Added "
            "17\nNameID=34\n");
    };
    series.byLibrary = [](long database, long number) {
        MATTER matter {};
        setText(matter.name, "Added " + to_string(number));
        setText(matter.comment, "Reference data");
        checked(qmdbAddMatter(database, &matter));
    };
    return series;
}

Series phases(Scale scale, long present)
{
    Series series;
    series.name = { "add phase", scale, "phases:" + to_string(present) };
    series.shape
        = { .substances = 1, .phases = present, .phaseChanges = 0, .phaseHeads = 0, .otherHeads = 0 };
    series.files = [=](const std::string& root, long number) {
        return newEntity(root + "/Substance1", "Phase" + to_string(present + number + 1), ".phd",
            "\xEF\xBB\xBF"
            "Aggreg=2\nID=0\nName=Added 17\nNameID=36\n");
    };
    series.byLibrary = [](long database, long number) {
        PHASE phase {};
        setText(phase.name, "Added " + to_string(number));
        phase.aggreg = MATTER_STATE_LIQUID;
        checked(qmdbAddPhase(database, 0, &phase));
    };
    return series;
}

/// Each parameter is the first of another phase.
Series parameters(Place place)
{
    Series series;
    const std::string where = place == Place::disk ? " on disk" : "";
    series.name = { "add parameter" + where, Scale::small, "rows:3" };
    series.place = place;
    series.shape = { .substances = 100, .phases = 1, .phaseChanges = 0, .phaseHeads = 0, .otherHeads = 0 };
    series.files = [](const std::string& root, long number) -> Addition {
        const std::string phase = root + "/Substance" + to_string(number + 1) + "/Phase1";
        return { phase, "",
            { { phase + "/Property1.dat", "273.15 4.217\n300 4.179\n350 4.195\n" },
                { phase + "/Property1.prh",
                    "\xEF\xBB\xBF"
                    "Data=Property1.dat\nID=1\nType=2\nVector=0\n" } } };
    };
    series.byLibrary = [](long database, long number) {
        PARAMETER parameter {};
        parameter.id = 1;
        parameter.type = PARAM_TYPE_TABLE_T;
        IDbDataTable table;
        table.count = 3;
        table.rows = new TABLEROW[3] { { 273.15, 4.217 }, { 300, 4.179 }, { 350, 4.195 } };
        checked(qmdbAddPhaseParam(database, number, 0, &parameter, &table));
    };
    return series;
}

std::string descriptor(const char* keys, long number)
{
    return std::string("\xEF\xBB\xBF") + keys + to_string(number) + "\n";
}

void buildByFloor(const std::string& root, long substances)
{
    for (long number = 1; number <= substances; ++number) {
        const std::string name = "Substance" + to_string(number);
        make(newEntity(root, name, ".mtd",
                 descriptor("Comment=\nCommentID=1\nComposition=\nID=1\nMixture=0\nNameID=1\nName=", number)
                     .c_str()),
            Extra::none);
        make(newEntity(root + "/" + name, "Phase1", ".phd",
                 descriptor("Aggreg=2\nID=0\nName=Liquid\nNameID=", number).c_str()),
            Extra::none);
    }
}

void buildByLibrary(const std::string& root, long substances)
{
    const Database database(root);
    for (long number = 1; number <= substances; ++number) {
        MATTER matter {};
        setText(matter.name, to_string(number));
        PHASE phase {};
        setText(phase.name, "Liquid");
        phase.aggreg = MATTER_STATE_LIQUID;
        checked(qmdbAddPhase(database.id(), checked(qmdbAddMatter(database.id(), &matter)), &phase));
    }
}

/// A whole database, each substance with a phase, into an empty directory in memory.
void addBuildCase(Scale scale, long substances)
{
    const CaseName name { "build", scale, "substances:" + to_string(substances) };
    const auto add = [&](const char* way, auto build) {
        addCase(name, way, [=](benchmark::State& state) {
            for (auto _ : state) {
                state.PauseTiming();
                std::optional<ScratchDirectory> root(Place::memory);
                state.ResumeTiming();
                build(root->path(), substances);
                state.PauseTiming();
                root.reset();
                state.ResumeTiming();
            }
        })->Iterations(1);
    };
    add("floor", buildByFloor);
    add("library", buildByLibrary);
}

} // namespace

void addAdditionCases()
{
    addBuildCase(Scale::small, 1000);
    addBuildCase(Scale::medium, 10000);
    addBuildCase(Scale::large, 100000);
    constexpr std::pair<Scale, long> sizes[]
        = { { Scale::small, 10 }, { Scale::medium, 1000 }, { Scale::large, 10000 } };
    for (const auto& [scale, present] : sizes) {
        addWays(substances(scale, present, Place::memory));
        addWays(phases(scale, present));
    }
    addWays(parameters(Place::memory));
    addWays(substances(Scale::small, 100, Place::disk));
    addWays(parameters(Place::disk));
}

} // namespace bench
