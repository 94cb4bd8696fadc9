// Every allocation of every kind of call fails once, and then for good: the call gives a code, nothing
// leaks, the database stays usable.

#include "api/additions.h"
#include "support/FailAllocation.h"
#include "support/trees.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace test;
using Mode = FailAllocation::Mode;

struct Attempt {
    int code;
    bool fired;
};

Attempt attempt(long number, Mode mode, const std::function<int()>& call)
{
    const FailAllocation failure(number, mode);
    const int code = call();
    return { code, failure.fired() };
}

// A lost line of the log is no failure, so a call may succeed all the same; its result is then checked
// like any other.
void expectCode(const Attempt& outcome)
{
    if (outcome.code < 0) {
        EXPECT_EQ(outcome.code, QMDB_E_INTERNAL);
        EXPECT_TRUE(outcome.fired);
    }
}

class Memory : public testing::TestWithParam<Mode> { };

TEST_P(Memory, open)
{
    const TempDatabase tree(water
        + Tree { { "default.lst", "1=\xC3\xA4\n" },
            { "W/w.mtd",
                std::string(utf8Mark)
                    + "ID=4\nName=W\xC3\xA4sser, a rather long name\nMixture=0\nComposition=\n" } });
    const std::wstring path = tree.path();
    const std::string whole = listing(OpenDatabase(tree).id);
    Attempt outcome { 0, true };
    for (long number = 0; outcome.fired; ++number) {
        long id = 77;
        outcome = attempt(number, GetParam(), [&] { return qmdbOpen(path.c_str(), L"", L"", true, &id); });
        expectCode(outcome);
        if (outcome.code == QMDB_OK) {
            EXPECT_EQ(listing(id), whole) << number;
            EXPECT_EQ(qmdbClose(id), QMDB_OK);
        } else {
            EXPECT_EQ(id, -1);
        }
    }
}

template <class List, class Get, class... Ids>
int fetched(Get* get, Ids... ids)
{
    List list;
    return get(ids..., &list.records, &list.count);
}

int readValue(long database, const Owner& owner, long parameter)
{
    IDbData* raw = nullptr;
    const int code = qmdbGetParamValue(database, owner.matter, owner.phase, owner.change, parameter, &raw);
    const Value value(raw);
    return code;
}

TEST_P(Memory, queries)
{
    const TempDatabase tree(water
        + Tree { { "W/M/x.prh", "ID=1\nVector=0\nType=4\nData=x" }, { "W/M/x", "P=1\n1 2\n3 4\nP=2\n1 2 \n" },
            { "W/M/y.prh", "ID=2\nVector=1\nType=5\nData=y" }, { "W/M/y", "P=1\n1 2 3 4\n3 4 5 6\n" },
            { "X/w.mtd", "ID=5\nName=Mix\nMixture=1\nComposition=4:0.25;5:0.75\n" },
            { "X/p/p.phd", "ID=1\nName=Liquid\nAggreg=2\n" } });
    const OpenDatabase db(tree);
    const std::string whole = listing(db.id);
    const std::function<int()> queries[] = {
        [&] { return fetched<Matters>(qmdbGetMatters, db.id); },
        [&] { return fetched<Phases>(qmdbGetPhases, db.id, 4); },
        [&] { return fetched<PhaseChanges>(qmdbGetPhaseChanges, db.id, 4); },
        [&] { return fetched<Parameters>(qmdbGetMatterParams, db.id, 4); },
        [&] { return fetched<Descriptions>(qmdbGetAvailablePhaseParams, db.id, 4, 2); },
        [&] { return readValue(db.id, { 4 }, 9); },
        [&] {
            return readValue(db.id, { 4, 2 }, 7);
        },
        [&] {
            return readValue(db.id, { 4, -1, 3 }, 8);
        },
        [&] {
            return readValue(db.id, { 4, -1, 3 }, 1);
        },
        [&] {
            return readValue(db.id, { 4, -1, 3 }, 2);
        },
    };
    for (const auto& query : queries) {
        SCOPED_TRACE(&query - queries);
        Attempt outcome { 0, true };
        for (long number = 0; outcome.fired; ++number) {
            outcome = attempt(number, GetParam(), query);
            expectCode(outcome);
        }
        EXPECT_EQ(listing(db.id), whole);
    }
}

// Runs an addition under every failing allocation. What succeeded must be listed and nothing else, now
// and, as far as it goes, after reopening.
void expectAdditions(Mode mode, const std::function<int(long database, std::wstring_view name)>& add,
    const std::function<std::ptrdiff_t(const std::string& listed)>& count)
{
    const TempDatabase tree(water + bareIron);
    const OpenDatabase db(tree);
    const std::ptrdiff_t before = count(listing(db.id));
    std::ptrdiff_t added = 0;
    Attempt outcome { 0, true };
    for (long number = 0; outcome.fired; ++number) {
        const std::wstring name = L"A new name that is rather long, number " + std::to_wstring(number);
        outcome = attempt(number, mode, [&] { return add(db.id, name); });
        expectCode(outcome);
        added += outcome.code >= 0 ? 1 : 0;
        EXPECT_EQ(count(listing(db.id)), before + added) << number;
    }
    EXPECT_GE(added, 1);
    EXPECT_EQ(OpenDatabase(tree).code, QMDB_OK);
}

auto linesWith(const char* start)
{
    return [start](const std::string& listed) {
        std::ptrdiff_t found = 0;
        for (std::size_t at = listed.find(start); at != listed.npos; at = listed.find(start, at + 1)) {
            ++found;
        }
        return found;
    };
}

TEST_P(Memory, additionsOfEntities)
{
    COMPONENT parts[] = { { 4, 0.25 }, { 5, 0.75 } };
    expectAdditions(
        GetParam(),
        [&](long db, std::wstring_view name) {
            MATTER record {};
            fill(record.name, name);
            record.mixture = -1; // so that the record does not free its components
            record.compositionCount = 2;
            record.composition = parts;
            return qmdbAddMatter(db, &record);
        },
        linesWith("matter "));
    expectAdditions(
        GetParam(), [](long db, std::wstring_view name) { return addPhase(db, 4, name, 1); },
        linesWith("  phase "));
    expectAdditions(
        GetParam(), [](long db, std::wstring_view name) { return addPhaseChange(db, 4, name, 1, 2); },
        linesWith("  change "));
}

TEST_P(Memory, additionsOfParameters)
{
    const TempDatabase tree(water + bareIron);
    const OpenDatabase db(tree);
    TABLEROW rows[] = { { 1, 2 }, { 3, 4 } };
    IDbDataTable value;
    value.rows = rows;
    value.count = 2;
    Attempt outcome { 0, true };
    for (long number = 0; outcome.fired; ++number) {
        const int phase = addPhase(db.id, 5, std::to_wstring(number), MATTER_STATE_LIQUID);
        ASSERT_GE(phase, 0);
        outcome = attempt(number, GetParam(), [&] {
            return addParam(db.id, { 5, phase }, { 7, PARAM_TYPE_TABLE_T }, &value);
        });
        expectCode(outcome);
        EXPECT_EQ(valueText(db.id, { 5, phase }, 7), outcome.code == QMDB_OK ? "(1 2)(3 4)" : "error -9")
            << number;
    }
    value.rows = nullptr; // not made with new
    EXPECT_EQ(outcome.code, QMDB_OK);
    EXPECT_EQ(OpenDatabase(tree).code, QMDB_OK);
}

INSTANTIATE_TEST_SUITE_P(FailingAllocation, Memory, testing::Values(Mode::once, Mode::forGood),
    [](const auto& mode) { return mode.param == Mode::once ? "once" : "forGood"; });

} // namespace
