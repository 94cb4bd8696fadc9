// Additions of parameters: the order of checks, the files written for the six kinds, names.

#include "api/additions.h"
#include "support/trees.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

namespace {

using namespace test;

// Descriptions 1 (everything), 10 to 12 (limited); substance 4 with phase 2 (liquid), 8 (solid) and
// 0 (no state), which hold nothing, and substance 5 without a free hand.
const Tree base = Tree { { "default.lst", "" },
    { "1.prd", "ID=1\nName=All\nUnits=u\nBinary=0\nScalar=1\nVector=1\nAvForPhases=SLV\nDataTypes=CtpTX\n" },
    { "10.prd", "ID=10\nName=Some\nUnits=\nBinary=\nScalar=1\nVector=0\nAvForPhases=S\nDataTypes=CtX\n" },
    { "11.prd",
        "ID=11\nName=Vectors\nUnits=\nBinary=\nScalar=yes\nVector=1\nAvForPhases=SLV\nDataTypes=p, T\n" },
    { "12.prd", "ID=12\nName=None\nUnits=\nBinary=\nScalar=11\nVector=\nDataTypes=c\n" },
    { "W/w.mtd", "ID=4\nName=Water\nMixture=0\nComposition=\n" },
    { "W/L/l.phd", "ID=2\nName=Liquid\nAggreg=2\n" }, { "W/S/s.phd", "ID=8\nName=Solid\nAggreg=1\n" },
    { "W/N/n.phd", "ID=0\nName=Unknown\nAggreg=0\n" } };

struct CheckCase {
    const char* name;
    Owner owner;
    NewParam param;
    bool value; // false: null
    int code;
    const char* log = "";
};

constexpr const char* badType = "ERROR: Incorrect parameter type for addition, ParamID=";
constexpr const char* badForm = "ERROR: Incorrect parameter scalar/vector type for addition, ParamID=";

TEST(AddParams, orderOfChecks)
{
    // Each row passes what the rows of earlier codes fail, and fails everything that comes later.
    const CheckCase cases[] = {
        { "matter", { 99 }, { 99, 9, true }, false, QMDB_E_NOT_FOUND },
        { "description", { 4, 99 }, { 99, 9, true }, false, QMDB_E_UNKNOWN_PARAMETER,
            "ERROR: Incorrect parameter ID for addition, 99\n" },
        { "negativeId", { 4 }, { -1, 1, false }, true, QMDB_E_UNKNOWN_PARAMETER,
            "ERROR: Incorrect parameter ID for addition, 18446744073709551615\n" },
        { "type", { 4, 99 }, { 10, 3, true }, false, QMDB_E_TYPE_NOT_ALLOWED, "10ParamType=3\n" },
        { "typeZero", { 4 }, { 1, 0 }, true, QMDB_E_TYPE_NOT_ALLOWED, "1ParamType=0\n" },
        { "typeSix", { 4 }, { 1, 6 }, true, QMDB_E_TYPE_NOT_ALLOWED, "1ParamType=6\n" },
        { "typeNegative", { 4 }, { 1, -1 }, true, QMDB_E_TYPE_NOT_ALLOWED,
            "1ParamType=18446744073709551615\n" },
        { "letterCaseCounts", { 4 }, { 12, 1 }, true, QMDB_E_TYPE_NOT_ALLOWED, "12ParamType=1\n" },
        { "smallTIsNotLargeT", { 4 }, { 10, 4 }, true, QMDB_E_TYPE_NOT_ALLOWED, "10ParamType=4\n" },
        { "vector", { 4, 99 }, { 10, 2, true }, false, QMDB_E_VECTOR_NOT_ALLOWED, "10Vector=1\n" },
        { "scalar", { 4 }, { 11, 4, false }, true, QMDB_E_VECTOR_NOT_ALLOWED, "11Vector=0\n" },
        { "phase", { 4, 99 }, { 10, 1 }, false, QMDB_E_NOT_FOUND },
        { "state", { 4, 2 }, { 10, 1 }, false, QMDB_E_STATE_NOT_ALLOWED,
            "ERROR: Incorrect parameter for the phase AS, ParamID=10AS=2\n" },
        { "noState", { 4, 0 }, { 1, 1 }, true, QMDB_E_STATE_NOT_ALLOWED,
            "ERROR: Incorrect parameter for the phase AS, ParamID=1AS=0\n" },
        { "matterHasIt", { 4 }, { 1, 1 }, false, QMDB_E_DUPLICATE_PARAMETER,
            "ERROR: Cannot append the parameter to substance because a parameter with such ID is already "
            "present, 1\n" },
        { "phaseHasIt", { 4, 2 }, { 1, 1 }, false, QMDB_E_DUPLICATE_PARAMETER,
            "ERROR: Cannot append the parameter to phase because a parameter with such ID is already "
            "present, 1\n" },
        { "matterValue", { 4 }, { 10, 5 }, false, QMDB_E_NULL_POINTER },
        { "phaseValue", { 4, 8 }, { 11, 3, true }, false, QMDB_E_NULL_POINTER },
    };
    const TempDatabase tree(base
        + Tree { { "W/a.prh", "ID=1\nVector=0\nType=1\nData=a" },
            { "W/L/a.prh", "ID=1\nVector=0\nType=1\nData=a" } });
    const OpenDatabase db(tree);
    for (const CheckCase& row : cases) {
        SCOPED_TRACE(row.name);
        tree.clearLog();
        const IDbDataConst value;
        EXPECT_EQ(addParam(db.id, row.owner, row.param, row.value ? &value : nullptr), row.code);
        const char* opening = row.code == QMDB_E_TYPE_NOT_ALLOWED ? badType
            : row.code == QMDB_E_VECTOR_NOT_ALLOWED               ? badForm
                                                                  : "";
        EXPECT_EQ(tree.log(), std::string(opening) + row.log);
    }
    EXPECT_EQ(tree.changes(), "");
    const TempDatabase none(Tree { base[0], base[1] });
    const OpenDatabase empty(none);
    EXPECT_EQ(addParam(empty.id, { 4 }, { 99 }, nullptr), QMDB_E_EMPTY);
    EXPECT_EQ(addParam(empty.id, { 4, 2 }, { 99 }, nullptr), QMDB_E_EMPTY);
}

TEST(AddParams, everyByteButZeroIsAVectorFlag)
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
    EXPECT_EQ(tree.log(), std::string(badForm) + "10Vector=1\n");
    EXPECT_EQ(tree.changes(),
        "== W/Property1.dat\n0 0 0\n== W/Property1.prh\n<mark>Data=Property1.dat\nID=1\nType=1\nVector=1\n");
}

TEST(AddParams, toASubstanceAndToAPhase)
{
    const TempDatabase tree(base);
    const std::string listed = "matter 4 'Water' '' mixture 0\n"
                               "  param 1 type 1 scalar 'All' 'u' = 4.1868\n"
                               "  phase 0 'Unknown' state 0\n"
                               "  phase 2 'Liquid' state 2\n"
                               "    param 1 type 1 scalar 'All' 'u' = 4.1868\n"
                               "  phase 8 'Solid' state 1\n";
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
TEST(AddParams, headsThatComeToOneIdReplaceEachOther)
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

// A table of one kind; `count` may lie about the rows.
template <class Table, class Row>
std::unique_ptr<IDbData> tableOf(std::vector<Row> rows, long count)
{
    auto table = std::make_unique<Table>();
    table->rows = rows.empty() ? nullptr : new Row[rows.size()];
    std::copy(rows.begin(), rows.end(), table->rows);
    table->count = count;
    return table;
}

template <class Table, class Subtable>
std::unique_ptr<IDbData> tableOf2D(const std::vector<Subtable>& subtables, long count)
{
    auto table = std::make_unique<Table>();
    table->subtables = subtables.empty() ? nullptr : new Subtable[subtables.size()];
    std::copy(subtables.begin(), subtables.end(), table->subtables);
    table->count = count;
    return table;
}

template <class Subtable, class Row>
Subtable subtable(double firstArg, const std::vector<Row>& rows)
{
    Subtable made;
    made.firstArg = firstArg;
    made.count = static_cast<long>(rows.size());
    made.rows = rows.empty() ? nullptr : new Row[rows.size()];
    std::copy(rows.begin(), rows.end(), made.rows);
    return made;
}

std::unique_ptr<IDbData> constant(double number)
{
    auto value = std::make_unique<IDbDataConst>();
    value->value = number;
    return value;
}

std::unique_ptr<IDbData> vectorOf(double x, double y, double z)
{
    auto value = std::make_unique<IDbDataConstVector>();
    value->x = x;
    value->y = y;
    value->z = z;
    return value;
}

struct WriteCase {
    const char* name;
    int type;
    bool vector;
    std::shared_ptr<IDbData> value;
    const char* bytes;
    const char* readBack;
};

TEST(AddParams, sixKindsOfValue)
{
    const auto scalar = subtable<SUBTABLECONST, TABLEROW>;
    const auto vectors = subtable<SUBTABLEVECT, TABLEROWVECT>;
    const WriteCase cases[] = {
        { "constant", 1, false, constant(1234567.891), "1.23457e+06\n", "1234570" },
        { "small", 1, false, constant(-1e-7), "-1e-07\n", "-1e-07" },
        { "constantVector", 1, true, vectorOf(0, 0.1, -9.80665), "0 0.1 -9.80665\n", "0 0.1 -9.80665" },
        { "table", 2, false, tableOf<IDbDataTable, TABLEROW>({ { 273.15, 4.217 }, { 300, 1 / 3. } }, 2),
            "273.15 4.217\n300 0.333333\n", "(273.15 4.217)(300 0.333333)" },
        { "tableOutOfOrder", 3, false, tableOf<IDbDataTable, TABLEROW>({ { 2, 1 }, { 1, 1 } }, 2),
            "2 1\n1 1\n", "error -11" },
        { "emptyTable", 3, false, tableOf<IDbDataTable, TABLEROW>({ { 1, 1 } }, 0), "", "error -9" },
        { "negativeCount", 3, false, tableOf<IDbDataTable, TABLEROW>({ { 1, 1 } }, -1), "", "error -9" },
        { "nullRows", 2, false, tableOf<IDbDataTable, TABLEROW>({}, 5), "", "error -9" },
        { "tableOfVectors", 3, true,
            tableOf<IDbDataTableVector, TABLEROWVECT>({ { 1, 2, 3, 4 }, { 5, 6, 7, 8e20 } }, 2),
            "1 2 3 4\n5 6 7 8e+20\n", "(1 2 3 4)(5 6 7 8e+20)" },
        { "nullVectorRows", 2, true, tableOf<IDbDataTableVector, TABLEROWVECT>({}, 5), "", "error -9" },
        { "table2D", 4, false,
            tableOf2D<IDbDataTable2D, SUBTABLECONST>({ scalar(101325, { { 300, 996.5 }, { 350, 973.7 } }),
                                                         scalar(5, {}), scalar(10, { { 1, 2 } }) },
                3),
            "P=101325\n300 996.5\n350 973.7\nP=5\nP=10\n1 2\n", "P=101325(300 996.5)(350 973.7)P=10(1 2)" },
        { "nullSubtables", 5, false, tableOf2D<IDbDataTable2D, SUBTABLECONST>({}, 2), "", "error -9" },
        { "table2DOfVectors", 5, true,
            tableOf2D<IDbDataTable2DVector, SUBTABLEVECT>({ vectors(1e6, { { 1, 2, 3, 4 } }) }, 1),
            "P=1e+06\n1 2 3 4\n", "P=1e+06(1 2 3 4)" },
        { "noSubtables", 4, true, tableOf2D<IDbDataTable2DVector, SUBTABLEVECT>({}, 0), "", "error -9" },
    };
    for (const WriteCase& row : cases) {
        SCOPED_TRACE(row.name);
        const TempDatabase tree(base);
        const OpenDatabase db(tree);
        EXPECT_EQ(addParam(db.id, { 4, 2 }, { 1, row.type, row.vector }, row.value.get()), QMDB_OK);
        EXPECT_EQ(tree.changes(),
            "== W/L/Property1.dat\n" + std::string(row.bytes)
                + "== W/L/Property1.prh\n<mark>Data=Property1.dat\nID=1\nType=" + std::to_string(row.type)
                + "\nVector=" + (row.vector ? "1" : "0") + "\n");
        EXPECT_EQ(tree.log(), "");
        EXPECT_EQ(valueText(db.id, { 4, 2 }, 1), row.readBack);
    }
}

struct PlaceCase {
    const char* name;
    Tree more; // made after opening
    int code;
    std::string value;
    std::string log;
    std::string changes;
};

constexpr const char* saved = "New substance parameter saved: $/W/Property1.prh, ID=1\n";

TEST(AddParams, placesOfTheFiles)
{
    const std::string head = "\n<mark>Data=Property1.dat\nID=1\nType=1\nVector=0\n";
    const PlaceCase cases[] = {
        { "firstFreeHead",
            { { "W/Property1.prh/", "" }, { "W/Property3.prh/", "" }, { "W/Property2.dat", "old\n" } },
            QMDB_OK, "7", "New substance parameter saved: $/W/Property2.prh, ID=1\n",
            "== W/Property1.prh/\n== W/Property2.dat\n7\n"
            "== W/Property2.prh\n<mark>Data=Property2.dat\nID=1\nType=1\nVector=0\n== W/Property3.prh/\n" },
        { "dataDoesNotBlock", { { "W/Property1.dat", "a longer old value\n" } }, QMDB_OK, "7", saved,
            "== W/Property1.dat\n7\n== W/Property1.prh" + head },
        { "dataCannotBeWritten", { { "W/Property1.dat/", "" } }, QMDB_OK, "error -7",
            std::string("ERROR: Cannot open file for write: $/W/Property1.prh\n") + saved,
            "== W/Property1.dat/\n== W/Property1.prh" + head },
        { "dataIsAFifo", { { "W/Property1.dat", "", Kind::fifo } }, QMDB_OK, "error -11",
            std::string("ERROR: Cannot open file for write: $/W/Property1.prh\n") + saved,
            "== W/Property1.dat\n== W/Property1.prh" + head },
        { "headCannotBeWritten", { { "W/Property1.prh", "nowhere/x", Kind::link } }, QMDB_E_FILE, "error -9",
            "ERROR: Cannot open file for write: $/W/Property1.prh\n",
            "== W/Property1.dat\n7\n== W/Property1.prh -> nowhere/x\n" },
        { "headIsADanglingLink", { { "W/Property1.prh", "made.txt", Kind::link } }, QMDB_OK, "7", saved,
            "== W/Property1.dat\n7\n== W/Property1.prh -> made.txt\n== W/made.txt" + head },
    };
    for (const PlaceCase& row : cases) {
        SCOPED_TRACE(row.name);
        const TempDatabase tree(base);
        const OpenDatabase db(tree, { .logInfo = true });
        std::for_each(row.more.begin(), row.more.end(), [&](const Entry& entry) { tree.make(entry); });
        tree.clearLog();
        EXPECT_EQ(addParam(db.id, { 4 }, { 1 }, constant(7).get()), row.code);
        EXPECT_EQ(tree.log(), row.log);
        EXPECT_EQ(tree.changes(), row.changes);
        EXPECT_EQ(valueText(db.id, { 4 }, 1), row.value);
    }
}

} // namespace
