// Lists: result codes, order, names from the string table, compositions, text fields.

#include "support/OpenDatabase.h"
#include "support/trees.h"

#include <gtest/gtest.h>

namespace {

using namespace test;

const Tree waterAndIron = water + bareIron;

TEST(Lists, ascendWithEveryField)
{
    const TempDatabase tree(waterAndIron
        + Tree { { "I/Q/q.phd", "ID=0\nName=Gas\nAggreg=3\n" },
            { "I/R/r.phd", "ID=-3\nName=Odd\nAggreg=77\n" },
            { "I/R/r.prh", "ID=7\nVector=0\nType=1\nData=r\n" }, { "I/R/r", "2\n" },
            { "I/S/s.pcd", "ID=8\nName=Same\nPhase1=5\nPhase2=\n" },
            { "I/T/t.pcd", "ID=6\nName=Other\nPhase1=x\nPhase2=-1\n" },
            { "I/a.prh", "ID=7\nVector=1 \nType=3\nData=a\n" },
            { "I/b.prh", "ID=1\nVector=1\nType=x\nData=\n" } });
    const OpenDatabase db(tree);
    EXPECT_EQ(listing(db.id),
        std::string(waterListing)
            + "matter 5 'Iron' '' mixture 0\n"
              "  param 1 type 0 vector '' '' = error -2\n"
              "  param 7 type 3 scalar 'Density' 'kg/m3' = error -3\n"
              "  phase -3 'Odd' state 77\n"
              "    param 7 type 1 scalar 'Density' 'kg/m3' = 2\n"
              "  phase 0 'Gas' state 3\n"
              "  phase 1 'Solid' state 1\n"
              "  change 6 'Other' 0 to -1\n"
              "  change 8 'Same' 5 to 0\n");
}

// A list call of one kind, with outputs that must be reset.
template <class Record, class List, class... Ids>
std::string emptyResult(List* list, Ids... ids)
{
    Record garbage {};
    Record* records = &garbage;
    int count = 77;
    const int code = list(ids..., &records, &count);
    return std::to_string(code) + (records ? " array " : " null ") + std::to_string(count);
}

TEST(Lists, emptyAndUnknown)
{
    const TempDatabase tree(waterAndIron);
    const OpenDatabase db(tree);
    EXPECT_EQ(emptyResult<PHASE>(qmdbGetPhases, db.id, 99), "-2 null 0");
    EXPECT_EQ(emptyResult<PHASECHANGE>(qmdbGetPhaseChanges, db.id, 99), "-2 null 0");
    EXPECT_EQ(emptyResult<PHASECHANGE>(qmdbGetPhaseChanges, db.id, 5), "-9 null 0");
    EXPECT_EQ(emptyResult<PARAMETER>(qmdbGetMatterParams, db.id, 99), "-2 null 0");
    EXPECT_EQ(emptyResult<PARAMETER>(qmdbGetMatterParams, db.id, 5), "-9 null 0");
    EXPECT_EQ(emptyResult<PARAMETER>(qmdbGetPhaseParams, db.id, 99, 2), "-2 null 0");
    EXPECT_EQ(emptyResult<PARAMETER>(qmdbGetPhaseParams, db.id, 4, 99), "-2 null 0");
    EXPECT_EQ(emptyResult<PARAMETER>(qmdbGetPhaseParams, db.id, 5, 1), "-9 null 0");
    EXPECT_EQ(emptyResult<PARAMETER>(qmdbGetPhaseChangeParams, db.id, 99, 3), "-2 null 0");
    EXPECT_EQ(emptyResult<PARAMETER>(qmdbGetPhaseChangeParams, db.id, 4, 99), "-2 null 0");
    EXPECT_EQ(emptyResult<PARAMETER>(qmdbGetPhaseChangeParams, db.id, 5, 3), "-9 null 0");
    EXPECT_EQ(emptyResult<PARAMETERDESCR>(qmdbGetAvailablePhaseParams, db.id, 99, 2), "-2 null 0");
    EXPECT_EQ(emptyResult<PARAMETERDESCR>(qmdbGetAvailablePhaseParams, db.id, 4, 99), "-2 null 0");
    EXPECT_EQ(tree.log(), "");
}

TEST(Lists, emptyDatabase)
{
    const TempDatabase tree(Tree { { "default.lst", "" }, water[1] });
    const OpenDatabase db(tree);
    EXPECT_EQ(emptyResult<MATTER>(qmdbGetMatters, db.id), "-9 null 0");
    EXPECT_EQ(emptyResult<PHASE>(qmdbGetPhases, db.id, 4), "-9 null 0");
    EXPECT_EQ(emptyResult<PHASECHANGE>(qmdbGetPhaseChanges, db.id, 4), "-9 null 0");
    EXPECT_EQ(emptyResult<PARAMETER>(qmdbGetMatterParams, db.id, 4), "-9 null 0");
    EXPECT_EQ(emptyResult<PARAMETER>(qmdbGetPhaseParams, db.id, 4, 2), "-9 null 0");
    EXPECT_EQ(emptyResult<PARAMETER>(qmdbGetPhaseChangeParams, db.id, 4, 3), "-9 null 0");
    EXPECT_EQ(emptyResult<PARAMETERDESCR>(qmdbGetAvailablePhaseParams, db.id, 4, 2), "-9 null 0");
    EXPECT_EQ(valueText(db.id, { 4 }, 9), "error -9");
}

TEST(Lists, namesComeFromTheStringTable)
{
    const TempDatabase tree({ { "default.lst",
                                  "1=Eau\n2=Remarque\n3=Liquide\n4=Fusion\n5=Densit\n6=kg\n8=\n=None\n" },
        { "7.prd", "ID=7\nName=Density\nNameID=5\nUnits=lb\nUnitsID=6\nBinary=\n" },
        { "8.prd", "ID=8\nName=Other\nNameID=05\nUnits=m\nUnitsID=+6\nBinary=\n" },
        { "W/w.mtd", "ID=4\nName=Water\nNameID=1\nComment=Text\nCommentID=2\nMixture=0\nComposition=\n" },
        { "W/a.prh", "ID=7\nVector=0\nType=1\nData=\n" }, { "W/b.prh", "ID=8\nVector=0\nType=1\nData=\n" },
        { "W/L/l.phd", "ID=1\nName=Liquid\nNameID=3\nAggreg=2\n" },
        { "W/E/e.phd", "ID=2\nName=Shown\nNameID=8\nAggreg=2\n" },
        { "W/F/f.phd", "ID=3\nName=Own\nNameID=99\nAggreg=2\n" },
        { "W/G/g.phd", "ID=4\nName=Absent\nAggreg=2\n" },
        { "W/M/m.pcd", "ID=1\nName=Melting\nNameID=4\nPhase1=\nPhase2=\n" } });
    const OpenDatabase db(tree);
    EXPECT_EQ(listing(db.id),
        "matter 4 'Eau' 'Remarque' mixture 0\n"
        "  param 7 type 1 scalar 'Densit' 'kg' = error -7\n"
        "  param 8 type 1 scalar 'Other' 'm' = error -7\n"
        "  phase 1 'Liquide' state 2\n"
        "  phase 2 '' state 2\n"
        "  phase 3 'Own' state 2\n"
        "  phase 4 'None' state 2\n"
        "  change 1 'Fusion' 0 to 0\n");
}

TEST(Lists, largeDirectoriesAndTables)
{
    constexpr int number = 1500;
    Tree entries;
    std::string table;
    std::string listed = bareIronListing;
    for (int i = 1; i <= number; ++i) {
        const std::string id = std::to_string(i);
        entries.push_back({ "I/P/Property" + id + ".prh", "ID=" + id + "\nVector=0\nType=9\nData=.\n" });
        table += id + "=A text of some length under the number " + id + "\n";
        listed += "    param " + id + " type 9 scalar '"
            + (i == number ? "A text of some length under the number 1500" : "") + "' '' = error -2\n";
    }
    entries.push_back({ "default.lst", table });
    entries.push_back({ "7.prd", "ID=1500\nName=\nNameID=1500\nUnits=\nBinary=\nScalar=1\nAvForPhases=S\n" });
    const TempDatabase tree(bareIron + entries);
    const OpenDatabase db(tree);
    EXPECT_EQ(listing(db.id), listed);
}

struct CompositionCase {
    const char* name;
    const char* text;
    const char* listed; // after "mixture 1", or the whole listing on failure
    const char* log = "";
};

const CompositionCase compositionCases[] = {
    { "empty", "", "" },
    { "noSeparators", "12 0.5", "" },
    { "two", "12:0.25;14:0.75", " 12:0.25 14:0.75" },
    { "commas", "12:0,25;14:0,75", " 12:0.25 14:0.75" },
    { "trailingSemicolon", "12:0.25;14:0.75;", " 12:0.25 14:0.75 0:0" },
    { "one", "12:1.0", " 12:1" },
    { "loneLastCharacter", "12:1", "error -12, count 2\n",
        "ERROR: Bad format of a composition line: 12:1\n" },
    { "trailingColon", "12:", " 12:0" },
    { "noId", ":0.5", "error -12, count 2\n", "ERROR: Bad format of a composition line: :0.5\n" },
    { "noFraction", "12:;14:0.5", "error -12, count 2\n",
        "ERROR: Bad format of a composition line: 12:;14:0.5\n" },
    { "twoSemicolons", "12:0.5;;", "error -12, count 2\n",
        "ERROR: Bad format of a composition line: 12:0.5;;\n" },
    { "semicolonAlone", ";", "error -12, count 2\n", "ERROR: Bad format of a composition line: ;\n" },
    { "badFraction", "12:abc", "error -11, count 2\n", "ERROR: Bad value of molar fraction: 12:abc\n" },
    { "badSecondFraction", "12:0.5;14:x.", "error -11, count 2\n",
        "ERROR: Bad value of molar fraction: 12:0.5;14:x.\n" },
    { "idIsNoNumber", "abc:0.5", " 0:0.5" },
    { "noColon", "0.5;0.25", " 0:0.5 0:0.25" },
    { "twoColons", "1:2:0.5", " 2:0.5" },
    { "trailingText", "12:0.25 mol;14: 0.75x", " 12:0.25 14:0.75" },
    { "negativeAndLarge", "-1:-0.5;99999999999999999999:1e3", " -1:-0.5 9223372036854775807:1000" },
};

TEST(Compositions, texts)
{
    for (const CompositionCase& row : compositionCases) {
        SCOPED_TRACE(row.name);
        const TempDatabase tree(bareIron
            + Tree { { "default.lst", "" },
                { "M/m.mtd", std::string("ID=6\nName=Mix\nMixture=1\nComposition=") + row.text + "\n" },
                { "M/P/p.phd", "ID=1\nName=Solid\nAggreg=1\n" } });
        const OpenDatabase db(tree);
        const std::string listed = row.listed;
        EXPECT_EQ(listing(db.id),
            listed.starts_with("error") ? listed
                                        : std::string(bareIronListing) + "matter 6 'Mix' '' mixture 1"
                    + listed + "\n  phase 1 'Solid' state 1\n");
        EXPECT_EQ(tree.log(), row.log);
    }
}

TEST(Compositions, onlyOfMixtures)
{
    for (const auto& [mixture, listed] : std::map<std::string, std::string> { { "0", "0" }, { "-1", "-1" },
             { "abc", "0" }, { "", "0" }, { "2", "2 7:0.5" }, { "1x", "1 7:0.5" } }) {
        const TempDatabase tree(bareIron
            + Tree { { "I/i.mtd", "ID=5\nName=Iron\nComposition=7:0.5\nMixture=" + mixture + "\n" } });
        EXPECT_EQ(listing(OpenDatabase(tree).id),
            "matter 5 'Iron' '' mixture " + listed + "\n  phase 1 'Solid' state 1\n");
    }
}

// A whole text field: the text, then zeros to the end.
template <std::size_t size>
std::string fieldText(const wchar_t (&field)[size])
{
    const std::wstring_view whole(field, size);
    const std::size_t length = whole.find(L'\0');
    const bool zeros = length != whole.npos && whole.find_first_not_of(L'\0', length) == whole.npos;
    return toUtf8(whole.substr(0, length)) + (zeros ? "" : " and no zeros");
}

TEST(TextFields, areCutAndFilledWithZeros)
{
    const std::string letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    for (const std::size_t length : { 0U, 8U, 9U, 10U, 48U, 49U, 50U, 60U }) {
        SCOPED_TRACE(length);
        const std::string text = letters.substr(0, length);
        const std::string name = letters.substr(0, std::min<std::size_t>(length, 49));
        const std::string units = letters.substr(0, std::min<std::size_t>(length, 9));
        const std::string named = "ID=1\nName=" + text + "\n";
        const TempDatabase tree(
            { { "i.prd",
                  named + "Units=" + text + "\nBinary=\nAvForPhases=S" + text + "\nDataTypes=" + text },
                { "I/i.mtd", named + "Mixture=\nComposition=\nComment=" + text },
                { "I/P/p.phd", named + "Aggreg=1" }, { "I/C/c.pcd", named + "Phase1=\nPhase2=\n" },
                { "I/i.prh", "ID=1\nType=1\nVector=\nData=\n" } });
        const OpenDatabase db(tree);
        Matters matters;
        ASSERT_EQ(qmdbGetMatters(db.id, &matters.records, &matters.count), QMDB_OK);
        EXPECT_EQ(fieldText(matters.records->name), name);
        EXPECT_EQ(fieldText(matters.records->comment), name);
        Phases phases;
        ASSERT_EQ(qmdbGetPhases(db.id, 1, &phases.records, &phases.count), QMDB_OK);
        EXPECT_EQ(fieldText(phases.records->name), name);
        PhaseChanges changes;
        ASSERT_EQ(qmdbGetPhaseChanges(db.id, 1, &changes.records, &changes.count), QMDB_OK);
        EXPECT_EQ(fieldText(changes.records->name), name);
        Parameters params;
        ASSERT_EQ(qmdbGetMatterParams(db.id, 1, &params.records, &params.count), QMDB_OK);
        EXPECT_EQ(fieldText(params.records->name), name);
        EXPECT_EQ(fieldText(params.records->units), units);
        Descriptions descrs;
        ASSERT_EQ(qmdbGetAvailablePhaseParams(db.id, 1, 1, &descrs.records, &descrs.count), QMDB_OK);
        EXPECT_EQ(fieldText(descrs.records->name), name);
        EXPECT_EQ(fieldText(descrs.records->units), units);
        EXPECT_EQ(fieldText(descrs.records->dataTypes), name);
        EXPECT_EQ(fieldText(descrs.records->avForPhases), ("S" + text).substr(0, 49));
    }
}

std::string descriptionsText(long database, long phase)
{
    Descriptions found;
    const int code = qmdbGetAvailablePhaseParams(database, 1, phase, &found.records, &found.count);
    std::string text = std::to_string(code) + (found.records ? "" : " null");
    for (const PARAMETERDESCR& descr : found) {
        text += "; " + std::to_string(descr.id) + " '" + toUtf8(descr.name) + "' '" + toUtf8(descr.units)
            + "' " + (descr.binary ? "b" : "-") + (descr.scalar ? "s" : "-") + (descr.vector ? "v" : "-")
            + " '" + toUtf8(descr.dataTypes) + "' '" + toUtf8(descr.avForPhases) + "'";
    }
    return text;
}

TEST(Descriptions, availableByState)
{
    const TempDatabase tree({ { "default.lst", "1=Dichte\n2=kg\n" },
        { "a.prd", "ID=9\nName=A\nUnits=m\nBinary=1\nScalar=1\nVector=0\nAvForPhases=S, L\nDataTypes=CtX\n" },
        { "b.prd", "ID=-3\nName=B\nNameID=1\nUnits=s\nUnitsID=2\nBinary=true\nVector=1\nAvForPhases=VS\n" },
        { "c.prd", "ID=5\nName=C\nUnits=\nBinary=2\nScalar=11\nVector= 1\nAvForPhases=slv\nDataTypes=c\n" },
        { "d.prd", "ID=6\nName=D\nUnits=\nBinary=\n" },
        { "I/i.mtd", "ID=1\nName=\nMixture=\nComposition=\n" }, { "I/0/p.phd", "ID=0\nName=0\nAggreg=0\n" },
        { "I/1/p.phd", "ID=1\nName=1\nAggreg=1\n" }, { "I/2/p.phd", "ID=2\nName=2\nAggreg=2\n" },
        { "I/3/p.phd", "ID=3\nName=3\nAggreg=3\n" }, { "I/4/p.phd", "ID=4\nName=4\nAggreg=4\n" },
        { "I/1/a.prh", "ID=9\nType=1\nVector=0\nData=x\n" } });
    const OpenDatabase db(tree);
    const std::string a = "; 9 'A' 'm' bs- 'CtX' 'S, L'";
    const std::string b = "; -3 'Dichte' 'kg' --v '' 'VS'";
    EXPECT_EQ(descriptionsText(db.id, 0), "0 null");
    EXPECT_EQ(descriptionsText(db.id, 1), "0" + b + a) << "also what the phase holds already";
    EXPECT_EQ(descriptionsText(db.id, 2), "0" + a);
    EXPECT_EQ(descriptionsText(db.id, 3), "0" + b);
    EXPECT_EQ(descriptionsText(db.id, 4), "0 null");
}

} // namespace
