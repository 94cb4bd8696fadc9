// Every allocation of every kind of call fails once, and then for good: the call gives a code, nothing
// leaks, the database stays usable.

#include "faults/FailAllocation.h"
#include "faults/FaultyAddition.h"
#include "support/Reliability.h"
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
    const TempDatabase tree(water + crowdIn("W")
        + Tree { { "default.lst", "1=\xC3\xA4\n" },
            { "W/w.mtd",
                std::string(utf8Mark)
                    + "ID=4\nName=W\xC3\xA4sser, a rather long name\nMixture=0\nComposition=\n" } });
    const std::wstring path = tree.path();
    const std::string whole = listing(OpenDatabase(tree).id);
    Attempt outcome { 0, true };
    Reliability reliability("every allocation fails");
    for (long number = 0; outcome.fired; ++number) {
        ++reliability.cases;
        long id = 77;
        const long live = liveBlocks();
        outcome = attempt(number, GetParam(), [&] { return qmdbOpen(path.c_str(), L"", L"", true, &id); });
        expectCode(outcome);
        if (outcome.code == QMDB_OK) {
            EXPECT_EQ(listing(id), whole) << number;
            EXPECT_EQ(qmdbClose(id), QMDB_OK);
        } else {
            EXPECT_EQ(id, -1);
        }
        EXPECT_EQ(liveBlocks(), live) << number;
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
            { "W/z.prh", "ID=3\nVector=0\nType=2\nData=z" },
            { "W/z", "1 0." + std::string(900, '3') + "\n" + std::string(900, '2') + " 4\n" },
            { "X/w.mtd", "ID=5\nName=Mix\nMixture=1\nComposition=4:0.25;5:0.75\n" },
            { "X/p/p.phd", "ID=1\nName=Liquid\nAggreg=2\n" } });
    const OpenDatabase db(tree);
    const std::string whole = listing(db.id);
    const std::function<int()> queries[] = {
        [&] { return fetched<Matters>(qmdbGetMatters, db.id); },
        [&] { return fetched<Phases>(qmdbGetPhases, db.id, 4); },
        [&] { return fetched<PhaseChanges>(qmdbGetPhaseChanges, db.id, 4); },
        [&] { return fetched<Parameters>(qmdbGetMatterParams, db.id, 4); },
        [&] { return fetched<Parameters>(qmdbGetPhaseParams, db.id, 4, 2); },
        [&] { return fetched<Parameters>(qmdbGetPhaseChangeParams, db.id, 4, 3); },
        [&] { return fetched<Descriptions>(qmdbGetAvailablePhaseParams, db.id, 4, 2); },
        [&] { return readValue(db.id, { 4 }, 9); },
        [&] { return readValue(db.id, { 4 }, 3); },
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
    Reliability reliability("every allocation fails");
    for (const auto& query : queries) {
        SCOPED_TRACE(&query - queries);
        const long live = liveBlocks();
        Attempt outcome { 0, true };
        for (long number = 0; outcome.fired; ++number) {
            outcome = attempt(number, GetParam(), query);
            ++reliability.cases;
            expectCode(outcome);
            EXPECT_EQ(liveBlocks(), live) << number;
        }
        EXPECT_EQ(listing(db.id), whole);
    }
}

// What ends things needs no memory.
TEST_P(Memory, giveBack)
{
    const TempDatabase tree(water);
    Reliability reliability("every allocation fails");
    const long live = liveBlocks();
    long id = 0;
    ASSERT_EQ(qmdbOpen(tree.path().c_str(), L"", L"", false, &id), QMDB_OK);
    MATTER* matters = nullptr;
    PHASE* phases = nullptr;
    PHASECHANGE* changes = nullptr;
    PARAMETER* params = nullptr;
    PARAMETERDESCR* descriptions = nullptr;
    IDbData* value = nullptr;
    int count = 0;
    ASSERT_EQ(qmdbGetMatters(id, &matters, &count), QMDB_OK);
    ASSERT_EQ(qmdbGetPhases(id, 4, &phases, &count), QMDB_OK);
    ASSERT_EQ(qmdbGetPhaseChanges(id, 4, &changes, &count), QMDB_OK);
    ASSERT_EQ(qmdbGetMatterParams(id, 4, &params, &count), QMDB_OK);
    ASSERT_EQ(qmdbGetAvailablePhaseParams(id, 4, 2, &descriptions, &count), QMDB_OK);
    ASSERT_EQ(qmdbGetParamValue(id, 4, 2, -1, 7, &value), QMDB_OK);
    const std::function<int()> calls[] = { [&] { return qmdbClose(id); },
        [&] { return qmdbDestroyMatterArray(&matters); }, [&] { return qmdbDestroyPhasesArray(&phases); },
        [&] { return qmdbDestroyPhaseChangeArray(&changes); },
        [&] { return qmdbDestroyParametersArray(&params); },
        [&] { return qmdbDestroyParamDescrArray(&descriptions); },
        [&] { return qmdbDestroyParameterData(&value); } };
    for (const auto& call : calls) {
        EXPECT_EQ(attempt(0, GetParam(), call).code, QMDB_OK) << &call - calls;
        ++reliability.cases;
    }
    EXPECT_EQ(liveBlocks(), live);
}

class MemoryOfAdditions : public FaultyAddition { };

TEST_P(MemoryOfAdditions, additions)
{
    Reliability reliability("every allocation fails");
    for (const Mode mode : { Mode::once, Mode::forGood }) {
        bool fired = true;
        for (long number = 0; fired && !HasFailure(); ++number) {
            SCOPED_TRACE(number);
            ++reliability.cases;
            const long live = liveBlocks();
            expectTruth(QMDB_E_INTERNAL, true, [&](long database) {
                const Attempt outcome = attempt(number, mode, [&] { return GetParam().add(database, 1); });
                fired = outcome.fired;
                return outcome.code;
            });
            EXPECT_EQ(liveBlocks(), live);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(FailingAllocation, MemoryOfAdditions, testing::ValuesIn(additions), additionName);

INSTANTIATE_TEST_SUITE_P(FailingAllocation, Memory, testing::Values(Mode::once, Mode::forGood),
    [](const auto& mode) { return mode.param == Mode::once ? "once" : "forGood"; });

} // namespace
