// Unknown databases and null pointers in every function, and the destroy functions.

#include "support/OpenDatabase.h"
#include "support/trees.h"

#include <gtest/gtest.h>

namespace {

using namespace test;

// An unknown database leaves the outputs as they were and comes before a null pointer.
template <class Record, class List, class... Ids>
void expectList(long database, List* list, Ids... ids)
{
    Record garbage {};
    Record* records = &garbage;
    int count = 77;
    EXPECT_EQ(list(-1, ids..., &records, &count), QMDB_E_NOT_FOUND);
    EXPECT_EQ(list(database, ids..., nullptr, &count), QMDB_E_NULL_POINTER);
    EXPECT_EQ(list(database, ids..., &records, nullptr), QMDB_E_NULL_POINTER);
    EXPECT_EQ(list(-1, ids..., nullptr, nullptr), QMDB_E_NOT_FOUND);
    EXPECT_EQ(records, &garbage);
    EXPECT_EQ(count, 77);
}

TEST(Arguments, listsOfUnknownDatabasesAndNull)
{
    const TempDatabase tree(water);
    const OpenDatabase db(tree);
    expectList<MATTER>(db.id, qmdbGetMatters);
    expectList<PHASE>(db.id, qmdbGetPhases, 4);
    expectList<PHASECHANGE>(db.id, qmdbGetPhaseChanges, 4);
    expectList<PARAMETER>(db.id, qmdbGetMatterParams, 4);
    expectList<PARAMETER>(db.id, qmdbGetPhaseParams, 4, 2);
    expectList<PARAMETER>(db.id, qmdbGetPhaseChangeParams, 4, 3);
    expectList<PARAMETERDESCR>(db.id, qmdbGetAvailablePhaseParams, 4, 2);
}

TEST(Arguments, otherUnknownDatabasesAndNull)
{
    const TempDatabase tree(water);
    const OpenDatabase db(tree);
    IDbDataConst garbage;
    IDbData* value = &garbage;
    EXPECT_EQ(qmdbGetParamValue(-1, 4, -1, -1, 9, &value), QMDB_E_NOT_FOUND);
    EXPECT_EQ(value, &garbage);
    for (const auto& [database, code] :
        { std::pair(db.id, QMDB_E_NULL_POINTER), std::pair(db.id + 1, QMDB_E_NOT_FOUND) }) {
        EXPECT_EQ(qmdbGetParamValue(database, 4, -1, -1, 9, nullptr), code);
        EXPECT_EQ(qmdbAddMatter(database, nullptr), code);
        EXPECT_EQ(qmdbAddPhase(database, 4, nullptr), code);
        EXPECT_EQ(qmdbAddPhaseChange(database, 4, nullptr), code);
        EXPECT_EQ(qmdbAddMatterParam(database, 4, nullptr, &garbage), code);
        EXPECT_EQ(qmdbAddPhaseParam(database, 4, 2, nullptr, &garbage), code);
    }
    EXPECT_EQ(tree.changes() + tree.log(), "");
    EXPECT_EQ(qmdbClose(-1), QMDB_E_NOT_FOUND);
}

TEST(Arguments, bothPhaseAndChangeComeFirst)
{
    const TempDatabase tree(water);
    const OpenDatabase db(tree);
    IDbDataConst garbage;
    IDbData* value = &garbage;
    EXPECT_EQ(qmdbGetParamValue(db.id, 4, 2, 3, 7, &value), QMDB_E_NOT_FOUND);
    EXPECT_EQ(qmdbGetParamValue(-1, 4, 2, 3, 7, &value), QMDB_E_NOT_FOUND);
    EXPECT_EQ(value, &garbage);
    EXPECT_EQ(qmdbGetParamValue(db.id, 4, 2, 3, 7, nullptr), QMDB_E_NOT_FOUND);
}

TEST(Arguments, nullTextsOfOpenAreEmpty)
{
    const TempDatabase tree(water);
    long id = 77;
    EXPECT_EQ(qmdbOpen(tree.path().c_str(), nullptr, nullptr, true, &id), QMDB_OK);
    EXPECT_TRUE(tree.exists("qmdb.log"));
    EXPECT_EQ(listing(id), waterListing);
    EXPECT_EQ(qmdbClose(id), QMDB_OK);
    EXPECT_EQ(qmdbOpen(nullptr, L"", tree.path().c_str(), false, &id), QMDB_E_FILE);
    EXPECT_EQ(id, -1);
    tree.clearLog();
    EXPECT_EQ(qmdbOpen(tree.path().c_str(), L"", L"", true, nullptr), QMDB_E_NULL_POINTER);
    EXPECT_FALSE(tree.exists("qmdb.log")) << "nothing is opened";
}

template <class Record>
void expectDestroys(int (*destroy)(Record**), Record* made)
{
    Record* given = made;
    EXPECT_EQ(destroy(&given), QMDB_OK);
    EXPECT_EQ(given, made) << "the caller's pointer stays";
    given = nullptr;
    EXPECT_EQ(destroy(&given), QMDB_E_NULL_POINTER);
    EXPECT_EQ(destroy(nullptr), QMDB_E_NULL_POINTER);
}

TEST(Destroy, everyKind)
{
    auto* matters = new MATTER[3] {};
    matters[1].mixture = 2;
    matters[1].composition = new COMPONENT[4];
    expectDestroys(qmdbDestroyMatterArray, matters);
    expectDestroys(qmdbDestroyPhasesArray, new PHASE[2]);
    expectDestroys(qmdbDestroyPhaseChangeArray, new PHASECHANGE[2]);
    expectDestroys(qmdbDestroyParametersArray, new PARAMETER[2]);
    expectDestroys(qmdbDestroyParamDescrArray, new PARAMETERDESCR[2]);
    auto* table = new IDbDataTable2DVector;
    table->subtables = new SUBTABLEVECT[2];
    table->subtables[0].rows = new TABLEROWVECT[3];
    expectDestroys<IDbData>(qmdbDestroyParameterData, table);
}

} // namespace
