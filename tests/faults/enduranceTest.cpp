// What a long-lived host does over and over: nothing piles up but the image of what was added.

#include "api/additions.h"
#include "faults/FailAllocation.h"
#include "faults/Watch.h"
#include "support/OpenDatabase.h"
#include "support/Reliability.h"
#include "support/additionKinds.h"
#include "support/trees.h"

#include <algorithm>
#include <dlfcn.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <malloc.h>

namespace fs = std::filesystem;

namespace {

using namespace test;

constexpr long mostGrowth = 64; // KiB

/// What the process holds of the system.
struct Holdings {
    std::size_t descriptors = openDescriptors();
    long mappings = countMappings();
    long blocks = liveBlocks();
    long resident = residentKiB();

private:
    static long countMappings()
    {
        std::ifstream maps("/proc/self/maps");
        return std::count(std::istreambuf_iterator(maps), {}, '\n');
    }

    /// Memory of the process's own, counted page by page.
    static long residentKiB()
    {
        ::malloc_trim(0); // what is free is not held
        std::ifstream in("/proc/self/smaps_rollup");
        long size = 0;
        for (std::string word; in >> word;) {
            if (word == "Anonymous:") {
                in >> size;
            }
        }
        return size;
    }
};

void expectLevel(const Holdings& before)
{
    const Holdings after;
    EXPECT_EQ(after.descriptors, before.descriptors);
    if (isSanitized) {
        return; // sanitizers keep freed memory, and look for leaks themselves
    }
    EXPECT_LE(after.mappings, before.mappings);
    EXPECT_EQ(after.blocks, before.blocks);
    EXPECT_LT(after.resident, before.resident + mostGrowth);
}

/// Calls `act` with numbers from 0: a few times to warm up, then so often, which must not grow the process.
void endure(const std::string& name, long inShort, long inLong, const std::function<void(long)>& act,
    long casesInOne = 1)
{
    Reliability reliability("endurance, " + name);
    const long count = isLongRun() ? inLong : inShort;
    const long warmUp = count / 20 + 4;
    const auto run = [&](long first, long end) {
        for (long i = first; i < end && !testing::Test::HasFailure(); ++i) {
            act(i);
        }
    };
    run(0, warmUp);
    const Holdings before;
    run(warmUp, warmUp + count);
    expectLevel(before);
    reliability.cases = static_cast<std::size_t>(count * casesInOne);
}

TEST(Endurance, openings)
{
    const TempDatabase tree(durableBase);
    const std::wstring path = tree.path();
    endure("openings", 2000, 100000, [&](long) {
        long id = 0;
        ASSERT_EQ(qmdbOpen(path.c_str(), L"en", L"", true, &id), QMDB_OK);
        ASSERT_EQ(qmdbClose(id), QMDB_OK);
    });
}

TEST(Endurance, failingOpenings)
{
    const TempDatabase incomplete(durableBase + Tree { { "Substance1/Phase2/Phase2.phd", "ID=1\n" } });
    const TempDatabase ambiguous(durableBase + Tree { { "Substance1/other.mtd", "" } });
    endure("failing openings", 2000, 100000, [&](long i) {
        const OpenDatabase db(i % 2 ? incomplete : ambiguous);
        ASSERT_EQ(db.code, i % 2 ? QMDB_E_REQUIRED_KEY : QMDB_E_FILE);
        ASSERT_EQ(db.id, -1);
    });
}

TEST(Endurance, values)
{
    const TempDatabase tree(water
        + Tree { { "W/L/x.prh", "ID=1\nVector=0\nType=4\nData=x" }, { "W/L/x", "P=1\n1 2\n3 4\n" },
            { "W/L/y.prh", "ID=2\nVector=1\nType=3\nData=y" }, { "W/L/y", "1 2 3 4\n5 6 7 8\n" },
            { "W/L/z.prh", "ID=3\nVector=1\nType=5\nData=z" }, { "W/L/z", "P=1\n1 2 3 4\nbad\n" } });
    const OpenDatabase db(tree);
    const std::pair<long, std::string> expected[] = { { 7, "(300 996.5)" }, { 1, "P=1(1 2)(3 4)" },
        { 2, "(1 2 3 4)(5 6 7 8)" }, { 3, "error -12" }, { 99, "error -2" } };
    endure("values", 20000, 1000000, [&](long i) {
        const auto& [parameter, text] = expected[static_cast<std::size_t>(i) % std::size(expected)];
        ASSERT_EQ(valueText(db.id, { 4, 2 }, parameter), text);
        if (i % 10000 == 0) {
            tree.clearLog(); // it grows by a line with each that is bad
        }
    });
}

/// Five additions: a substance with a phase, a phase change and two parameters.
void addFive(long database, long number)
{
    IDbDataConst constant;
    constant.value = static_cast<double>(number) + 0.5;
    const int matter = addMatter(database, { L"Added " + std::to_wstring(number), L"a comment" });
    ASSERT_GE(matter, 0);
    ASSERT_EQ(addPhase(database, matter, L"Solid", MATTER_STATE_SOLID), 0);
    ASSERT_EQ(addPhaseChange(database, matter, L"Melting", 0, 1), 0);
    ASSERT_EQ(addParam(database, { matter }, { 1 }, &constant), QMDB_OK);
    ASSERT_EQ(addParam(database, { matter, 0 }, { 2 }, &constant), QMDB_OK);
    ASSERT_EQ(valueText(database, { matter, 0 }, 2), numberText(constant.value));
}

// The image of what was added goes with its database.
TEST(Endurance, additions)
{
    constexpr long inOne = 100;
    const auto grow = [](long) {
        const TempDatabase tree(durableBase);
        const OpenDatabase db(tree);
        for (long i = 0; i < inOne && !testing::Test::HasFailure(); ++i) {
            addFive(db.id, i);
        }
    };
    endure("additions", 2, 20, grow, 5 * inOne);
}

/// Everything that a host of plug-ins does with a library: loads a copy, uses it, and lets it go.
void loadAndUse(const std::string& library, const std::wstring& path)
{
    void* const loaded = ::dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(loaded, nullptr) << ::dlerror();
    const auto open = reinterpret_cast<decltype(&qmdbOpen)>(::dlsym(loaded, "qmdbOpen"));
    const auto add = reinterpret_cast<decltype(&qmdbAddMatter)>(::dlsym(loaded, "qmdbAddMatter"));
    const auto close = reinterpret_cast<decltype(&qmdbClose)>(::dlsym(loaded, "qmdbClose"));
    long id = 0;
    EXPECT_EQ(open(L"", L"", path.c_str(), false, &id), QMDB_E_FILE) << "an exception passes the library";
    ASSERT_EQ(open(path.c_str(), L"", L"", true, &id), QMDB_OK);
    EXPECT_EQ(id, 1) << "the library begins anew";
    MATTER record {};
    record.name[0] = static_cast<wchar_t>(0x110000); // has no UTF-8 form, which is another exception
    EXPECT_EQ(add(id, &record), QMDB_E_FILE);
    EXPECT_EQ(close(id), QMDB_OK);
    EXPECT_EQ(::dlclose(loaded), 0);
    EXPECT_EQ(::dlopen(library.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << "it has gone";
}

TEST(Endurance, loadings)
{
    Dl_info own {};
    ASSERT_NE(::dladdr(reinterpret_cast<const void*>(&qmdbOpen), &own), 0);
    const TempDatabase tree(durableBase);
    const std::string copy = tree.root() + "/copy.so"; // the test's own one cannot go
    fs::copy_file(own.dli_fname, copy);
    endure("loadings", 40, 1000, [&](long) { loadAndUse(copy, tree.path()); });
}

} // namespace
