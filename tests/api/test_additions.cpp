// Additions in short, and what is seldom passed: bytes from other languages, the highest and the lowest IDs.

#include "api/additions.h"
#include "support/trees.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using namespace test;

TEST(Additions, intoAnEmptyDatabase)
{
    const TempDatabase tree(Tree { { "default.lst", "" } });
    const std::string listed = "matter 0 'St\xC3\xA4hle' 'Made' mixture 0\n"
                               "  phase 0 'Solid' state 1\n  change 0 'Melting' 7 to 7\n";
    {
        const OpenDatabase db(tree, { .logInfo = true });
        tree.clearLog();
        EXPECT_EQ(addMatter(db.id, { L"St\u00E4hle", L"Made" }), 0);
        EXPECT_EQ(valueText(db.id, { 0, 0 }, 1), "error -9") << "no phases yet";
        EXPECT_EQ(addPhase(db.id, 0, L"Solid", 1), 0);
        EXPECT_EQ(addPhaseChange(db.id, 0, L"Melting", 7, 7), 0);
        EXPECT_EQ(listing(db.id), listed);
    }
    EXPECT_EQ(tree.log(),
        "New material saved: $/Substance1/Substance1.mtd, ID=0\n"
        "New phase saved: $/Substance1/Phase1/Phase1.phd, ID=0\n"
        "New phase change saved: $/Substance1/PC1/PC1.pcd, ID=0\n");
    EXPECT_EQ(tree.changes(),
        "== Substance1/PC1/PC1.pcd\n<mark>ID=0\nName=Melting\nNameID=3\nPhase1=7\nPhase2=7\n"
        "== Substance1/Phase1/Phase1.phd\n<mark>Aggreg=1\nID=0\nName=Solid\nNameID=2\n"
        "== Substance1/Substance1.mtd\n<mark>Comment=Made\nCommentID=1\nComposition=\nID=0\nMixture=0\n"
        "Name=St\xC3\xA4hle\nNameID=0\n");
    EXPECT_EQ(listing(OpenDatabase(tree).id), listed);
}

TEST(Additions, toLoadedOnes)
{
    const TempDatabase tree(water);
    const OpenDatabase db(tree);
    EXPECT_EQ(addPhase(db.id, 4, L"Odd", -1), 3);
    EXPECT_EQ(addPhaseChange(db.id, 4, L"Odd", -1, 9), 4);
    EXPECT_EQ(addMatter(db.id, { L"Odd" }), 5);
    EXPECT_EQ(addMatter(db.id, { L"water" }), 6) << "letter case makes another name";
    EXPECT_EQ(listing(db.id),
        "matter 4 'Water' '' mixture 0\n"
        "  param 9 type 1 scalar '' '' = 1.5\n"
        "  phase 2 'Liquid' state 2\n"
        "    param 7 type 2 scalar 'Density' 'kg/m3' = (300 996.5)\n"
        "  phase 3 'Odd' state -1\n"
        "  change 3 'Melting' 1 to 2\n"
        "    param 8 type 1 vector '' '' = 1 2 3\n"
        "  change 4 'Odd' 9223372036854775807 to 9\n"
        "matter 5 'Odd' '' mixture 0\n"
        "matter 6 'water' '' mixture 0\n");
    EXPECT_EQ(tree.changes(),
        "== Substance1/Substance1.mtd\n<mark>Comment=\nCommentID=4\nComposition=\nID=5\nMixture=0\nName=Odd\n"
        "NameID=3\n"
        "== "
        "Substance2/Substance2.mtd\n<mark>Comment=\nCommentID=6\nComposition=\nID=6\nMixture=0\nName=water\n"
        "NameID=5\n"
        "== W/PC1/PC1.pcd\n<mark>ID=4\nName=Odd\nNameID=2\nPhase1=18446744073709551615\nPhase2=9\n"
        "== W/Phase1/Phase1.phd\n<mark>Aggreg=18446744073709551615\nID=3\nName=Odd\nNameID=1\n");
    EXPECT_EQ(tree.log(), "");
}

TEST(Additions, highestIds)
{
    const TempDatabase tree({ { "A/a.mtd", "ID=-7\nName=A\nMixture=\nComposition=\n" },
        { "A/P/p.phd", "ID=-2\nName=P\nAggreg=\n" } });
    const OpenDatabase db(tree);
    EXPECT_EQ(addPhase(db.id, -7, L"N", 1), 0) << "negative IDs raise nothing";
    EXPECT_EQ(addMatter(db.id, { L"N" }), 0);
    const TempDatabase large(Tree { { "A/a.mtd", "ID=4294967295\nName=A\nMixture=\nComposition=\n" },
        { "A/P/p.phd", "ID=9223372036854775807\nName=P\nAggreg=\n" } });
    const OpenDatabase narrow(large);
    EXPECT_EQ(addMatter(narrow.id, { L"N" }), 0) << "the ID's low 32 bits";
    EXPECT_NE(large.read("Substance1/Substance1.mtd").find("\nID=4294967296\n"), std::string::npos);
    EXPECT_EQ(addPhase(narrow.id, 4294967295, L"N", 1), QMDB_E_INTERNAL) << "no free ID left";
}

// Everything may be added to substance 4 and to its phase 2, but no vectors of parameter 10.
const Tree base = Tree { { "default.lst", "" },
    { "1.prd", "ID=1\nName=All\nUnits=u\nBinary=0\nScalar=1\nVector=1\nAvForPhases=SLV\nDataTypes=CtpTX\n" },
    { "10.prd", "ID=10\nName=Some\nUnits=\nBinary=\nScalar=1\nVector=0\nAvForPhases=S\nDataTypes=CtX\n" },
    { "W/w.mtd", "ID=4\nName=Water\nMixture=0\nComposition=\n" },
    { "W/L/l.phd", "ID=2\nName=Liquid\nAggreg=2\n" } };

TEST(Additions, everyByteButZeroIsAVectorFlag)
{
    const TempDatabase tree(base);
    const OpenDatabase db(tree);
    PARAMETER record {};
    record.id = 1;
    record.type = PARAM_TYPE_CONSTANT;
    constexpr unsigned char fromAnotherLanguage = 2;
    std::memcpy(&record.vector, &fromAnotherLanguage, sizeof fromAnotherLanguage);
    const IDbDataConstVector value;
    EXPECT_EQ(qmdbAddMatterParam(db.id, 4, &record, &value), QMDB_OK);
    record.id = 10;
    EXPECT_EQ(qmdbAddPhaseParam(db.id, 4, 2, &record, &value), QMDB_E_VECTOR_NOT_ALLOWED);
    EXPECT_EQ(tree.log(), "ERROR: Incorrect parameter scalar/vector type for addition, ParamID=10Vector=1\n");
    EXPECT_EQ(tree.changes(),
        "== W/Property1.dat\n0 0 0\n== W/Property1.prh\n<mark>Data=Property1.dat\nID=1\nType=1\nVector=1\n");
}

TEST(Additions, toASubstanceAndToAPhase)
{
    const TempDatabase tree(base);
    const std::string listed = "matter 4 'Water' '' mixture 0\n"
                               "  param 1 type 1 scalar 'All' 'u' = 4.1868\n"
                               "  phase 2 'Liquid' state 2\n"
                               "    param 1 type 1 scalar 'All' 'u' = 4.1868\n";
    {
        const OpenDatabase db(tree, { .logInfo = true });
        tree.clearLog();
        IDbDataConst value;
        value.value = 4.1868;
        EXPECT_EQ(addParam(db.id, { 4 }, { 1 }, &value), QMDB_OK);
        EXPECT_EQ(addParam(db.id, { 4, 2 }, { 1 }, &value), QMDB_OK);
        EXPECT_EQ(addParam(db.id, { 4 }, { 1 }, &value), QMDB_E_DUPLICATE_PARAMETER);
        EXPECT_EQ(listing(db.id), listed);
    }
    EXPECT_EQ(tree.log(),
        "New substance parameter saved: $/W/Property1.prh, ID=1\n"
        "New phase parameter saved: $/W/L/Property1.prh, ID=1\n"
        "ERROR: Cannot append the parameter to substance because a parameter with such ID is already "
        "present, 1\n");
    EXPECT_EQ(tree.changes(),
        "== W/L/Property1.dat\n4.1868\n"
        "== W/L/Property1.prh\n<mark>Data=Property1.dat\nID=1\nType=1\nVector=0\n"
        "== W/Property1.dat\n4.1868\n"
        "== W/Property1.prh\n<mark>Data=Property1.dat\nID=1\nType=1\nVector=0\n");
    EXPECT_EQ(listing(OpenDatabase(tree).id), listed);
}

// A negative ID is written unsigned, and read as the highest ID there is.
TEST(Additions, headsThatComeToOneIdReplaceEachOther)
{
    const TempDatabase tree(base
        + Tree { { "n.prd",
            "ID=-4\nName=Below\nUnits=\nAvForPhases=\nDataTypes=C\nBinary=\nScalar=1\nVector=\n" } });
    const OpenDatabase db(tree);
    IDbDataConst value;
    for (const double number : { 1, 2 }) {
        value.value = number;
        EXPECT_EQ(addParam(db.id, { 4 }, { -4 }, &value), QMDB_OK);
    }
    const char* const listed = "  param 9223372036854775807 type 1 scalar '' '' = 2\n";
    EXPECT_NE(listing(db.id).find(listed), std::string::npos) << listing(db.id);
    EXPECT_EQ(listing(db.id).find("= 1\n"), std::string::npos);
}

} // namespace
