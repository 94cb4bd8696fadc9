// Values read from data files: the six kinds, every fault with its code and its whole log.

#include "support/OpenDatabase.h"
#include "support/ScopedLocale.h"
#include "support/trees.h"

#include <gtest/gtest.h>

namespace {

using namespace test;
using namespace std::string_literals;

struct ValueCase {
    const char* name;
    std::string bytes;
    std::string value;
    std::string log = ""; // with "@" for the data file's path
};

// What reading `bytes` as a value of this kind gives, and the log of that alone.
void expectValues(PARAM_TYPE type, bool vector, const std::vector<ValueCase>& cases)
{
    for (const ValueCase& row : cases) {
        SCOPED_TRACE(row.name);
        const TempDatabase tree(bareIron
            + Tree { { "I/v.dat", row.bytes },
                { "I/v.prh",
                    "ID=1\nData=v.dat\nType=" + std::to_string(type)
                        + "\nVector=" + (vector ? "1" : "0") } });
        const OpenDatabase db(tree, { .logInfo = true });
        tree.clearLog();
        EXPECT_EQ(valueText(db.id, { 5 }, 1), row.value);
        std::string log = row.log;
        if (const std::size_t at = log.find('@'); at != log.npos) {
            log.replace(at, 1, "$/I/v.dat");
        }
        EXPECT_EQ(tree.log(), log);
    }
}

TEST(Values, constants)
{
    expectValues(PARAM_TYPE_CONSTANT, false,
        {
            { "plain", "4.1868\n", "4.1868" },
            { "lastLineCounts", "1.5\nabc\n\n# x\n2.5\n# y\n", "2.5" },
            { "noLineEnd", "# x\n5", "5" },
            { "crLfAndBlanks", "  7 \r\n\r\n", "7" },
            { "comma", "4,1868\n", "4.1868" },
            { "twoCommas", "1,5,0\n", "1.5" },
            { "exponent", "-1,5e3 J\n", "-1500" },
            { "trailingText", "1.5 # old\n", "1.5" },
            { "nulEndsTheLine", "7\0008\n"s, "7" },
            { "hexadecimal", "0x1p4\n", "16" },
            { "infinity", "-inf\n", "-inf" },
            { "onlyComments", "# x\n\n", "error -11", "ERROR: Bad const value:  (@)\n" },
            { "empty", "", "error -11", "ERROR: Bad const value:  (@)\n" },
            { "noNumber", "abc\n", "error -11", "ERROR: Bad const value: abc (@)\n" },
            { "indentedCommentIsData", " # 5\n", "error -11", "ERROR: Bad const value:  # 5 (@)\n" },
            { "lastLineBad", "1\nx\n", "error -11", "ERROR: Bad const value: x (@)\n" },
            { "longestLine", "#" + std::string(1021, 'x') + "\n3\n", "3" },
            { "longestLineAtTheEnd", "3" + std::string(1021, ' '), "3" },
            { "tooLong", "#" + std::string(1022, 'x') + "\n3\n", "error -7",
                "ERROR: Cannot read parameter data file: @\n" },
            { "tooLongByCr", "3" + std::string(1021, ' ') + "\r\n", "error -7",
                "ERROR: Cannot read parameter data file: @\n" },
        });
}

TEST(Values, constantVectors)
{
    expectValues(PARAM_TYPE_CONSTANT, true,
        {
            { "plain", "# gravity\n0 0 9.81\n", "0 0 9.81" },
            { "runsOfBlanks", "  1   2,5  -3e2 \r\n", "1 2.5 -300" },
            { "tabsAreNoSeparators", "1 2\t5 3\n", "1 2 3" },
            { "noBlank", "12\n", "error -12", "ERROR: Bad const vector format: 12 (@)\n" },
            { "twoParts", "1 2 \n", "error -12", "ERROR: Bad const vector format: 1 2  (@)\n" },
            { "fiveParts", "0 0 9.81 # old\n", "error -12",
                "ERROR: Bad const vector format: 0 0 9.81 # old (@)\n" },
            { "onlyComments", "# x\n", "error -12", "ERROR: Bad const vector format:  (@)\n" },
            { "badFirst", "x 2 y\n", "error -11", "ERROR: Bad const vector component: 0 (@)\n" },
            { "badLast", "1 2 .\n", "error -11", "ERROR: Bad const vector component: 2 (@)\n" },
        });
}

TEST(Values, tables)
{
    expectValues(PARAM_TYPE_TABLE_T, false,
        {
            { "plain", "# T Cp\n273.15 4.217\n300 4.179\n350 4.195\n", "(273.15 4.217)(300 4.179)(350 4.195)",
                "3 data lines loaded\n" },
            { "noLineEnd", "1,5 2,5\r\n2 -inf", "(1.5 2.5)(2 -inf)", "2 data lines loaded\n" },
            { "onlyComments", "# x\n\n", "error -9", "0 data lines loaded\n" },
            { "equalArguments", "1 10\n# x\n1 20\nx\n", "error -11",
                "ERROR: Monotony error [1]: 1 20 (@)\n" },
            { "fallingArguments", "1 0\n2 10\n1,5 20\n", "error -11",
                "ERROR: Monotony error [2]: 1,5 20 (@)\n" },
            { "nanFirst", "nan 1\n", "error -11", "ERROR: Monotony error [0]: nan 1 (@)\n" },
            { "nanLater", "1 1\nnan 2\n", "error -11", "ERROR: Monotony error [1]: nan 2 (@)\n" },
            { "onePart", "1 10\n2\n", "error -12", "ERROR: Bad table format [1]: 2 (@)\n" },
            { "threeParts", "1 2 3\n", "error -12", "ERROR: Bad table format [0]: 1 2 3 (@)\n" },
            { "blankLine", " \n", "error -12", "ERROR: Bad table format [0]:   (@)\n" },
            { "badArgument", "x y\n", "error -11", "ERROR: Bad table component [0]: 0 (@)\n" },
            { "badValue", "1 1\n\n2 y\n", "error -11", "ERROR: Bad table component [1]: 1 (@)\n" },
        });
    expectValues(PARAM_TYPE_TABLE_P, false, { { "otherType", "1 2\n", "(1 2)", "1 data lines loaded\n" } });
}

TEST(Values, tablesOfVectors)
{
    expectValues(PARAM_TYPE_TABLE_P, true,
        {
            { "plain", "0.5 1 0 0\n# x\n1 0 1 nan", "(0.5 1 0 0)(1 0 1 nan)", "2 data lines loaded\n" },
            { "empty", "", "error -9", "0 data lines loaded\n" },
            { "threeParts", "0 1 2\n1 1 2 3\n", "error -12",
                "2 data lines loaded\nERROR: Bad table format [0]: 0 1 2 (@)\n" },
            { "badLastNumber", "0 1 2 3\n1 1 2 x\n", "error -11",
                "2 data lines loaded\nERROR: Bad table vector component [1]: 3 (@)\n" },
            { "equalArguments", "1 1 2 3\n1 1 2 3\nx\n", "error -11",
                "3 data lines loaded\nERROR: Monotony error [1]: 1 1 2 3 (@)\n" },
            { "nanFirst", "nan 1 2 3\n", "error -11",
                "1 data lines loaded\nERROR: Monotony error [0]: nan 1 2 3 (@)\n" },
        });
    expectValues(
        PARAM_TYPE_TABLE_T, true, { { "otherType", "1 2 3 4\n", "(1 2 3 4)", "1 data lines loaded\n" } });
}

TEST(Values, tablesOfTwoArguments)
{
    expectValues(PARAM_TYPE_TABLE2D_T, false,
        {
            { "plain", "# P T rho\nP=1\n300 996.5\n350 973.7\nP=10\n300 996.9\n",
                "P=1(300 996.5)(350 973.7)P=10(300 996.9)",
                "2 data lines subtable loaded\n1 data lines subtable loaded\n2 subtables loaded\n" },
            { "unendedLastRowIsDropped", "P=1\n1 2\n3 4\nP=2\n5 6\n7 8", "P=1(1 2)(3 4)P=2(5 6)",
                "2 data lines subtable loaded\n1 data lines subtable loaded\n2 subtables loaded\n" },
            { "unendedOnlyRowDropsItsSubtable", "P=1\n1 2\nP=2\nx", "P=1(1 2)",
                "1 data lines subtable loaded\n1 subtables loaded\n" },
            { "unendedCommentEndsTheFile", "P=1\n1 2\n# x", "P=1(1 2)",
                "1 data lines subtable loaded\n1 subtables loaded\n" },
            { "unendedHeaderIsNotRead", "P=1\n1 2\nP=abc", "P=1(1 2)",
                "1 data lines subtable loaded\n1 subtables loaded\n" },
            { "headerWithoutRows", "P=1\nP=2\n\n1 2\r\nP=3\n", "P=2(1 2)",
                "1 data lines subtable loaded\n1 subtables loaded\n" },
            { "firstArgumentsAreFree", "P=10\n4 1\nP=1\n3 1\nP=10\n2 1\n", "P=10(4 1)P=1(3 1)P=10(2 1)",
                "1 data lines subtable loaded\n1 data lines subtable loaded\n"
                "1 data lines subtable loaded\n3 subtables loaded\n" },
            { "scannedFirstArgument", "P= 1,5 bar\n1 2\n", "P=1.5(1 2)",
                "1 data lines subtable loaded\n1 subtables loaded\n" },
            { "headersOnly", "P=1\nP=2\n", "error -9" },
            { "empty", "", "error -9" },
            { "badFirstArgument", "P=1\n1 2\nP=abc\n", "error -11",
                "1 data lines subtable loaded\nERROR: First arg value error [0]: P=abc (@)\n" },
            { "rowBeforeHeader", "1 2\nP=1\n1 2\n", "error -12", "ERROR: Bad table format [0]: 1 2 (@)\n" },
            { "unendedRowBeforeHeader", "1 2", "error -9" },
            { "lowerCaseIsNoHeader", "p=1\n", "error -12", "ERROR: Bad table format [0]: p=1 (@)\n" },
            { "indentedIsNoHeader", "P=1\n1 2\n P=2\n", "error -12",
                "ERROR: Bad table format [1]:  P=2 (@)\n" },
            { "threeParts", "P=1\n1 2\nP=2\n1 2 3\n", "error -12",
                "1 data lines subtable loaded\nERROR: Bad table format [0]: 1 2 3 (@)\n" },
            { "badArgument", "P=1\n1 2\nx 3\n", "error -11", "ERROR: Bad table component [1]: 0 (@)\n" },
            { "badValue", "P=1\n1 x\n", "error -11", "ERROR: Bad table component [0]: 1 (@)\n" },
            { "equalArguments", "P=1\n1 2\n1 3\n", "error -11", "ERROR: Monotony error [1]: 1 3 (@)\n" },
            { "nanFirst", "P=1\nnan 2\n", "error -11", "ERROR: Monotony error [0]: nan 2 (@)\n" },
            { "tooLong", "P=1\n1 2\nP=" + std::string(1021, ' ') + "\n", "error -7",
                "ERROR: Cannot read parameter data file: @\n" },
        });
    expectValues(PARAM_TYPE_TABLE2D_X, false,
        { { "otherType", "P=1\n1 2\n", "P=1(1 2)", "1 data lines subtable loaded\n1 subtables loaded\n" } });
}

TEST(Values, tablesOfTwoArgumentsOfVectors)
{
    expectValues(PARAM_TYPE_TABLE2D_X, true,
        {
            { "plain", "P=1\n1 2 3 4\n5 6 7 8\nP=0\n1 2 3 4\n", "P=1(1 2 3 4)(5 6 7 8)P=0(1 2 3 4)",
                "2 data lines subtable loaded\n1 data lines subtable loaded\n2 subtables loaded\n" },
            { "unendedLastRowIsDropped", "P=1\n1 2 3 4\n5 6 7 8", "P=1(1 2 3 4)",
                "1 data lines subtable loaded\n1 subtables loaded\n" },
            { "faultIsFoundAtTheEnd", "P=1\n1 2 3 4\nP=2\n1 2\n3 4 5 6\n", "error -12",
                "1 data lines subtable loaded\n2 data lines subtable loaded\n"
                "ERROR: Bad table format [0]: 1 2 (@)\n" },
            { "faultIsFoundAtTheNextHeader", "P=1\n1 2 3 4\n1 2 3 4\nP=abc\n", "error -11",
                "2 data lines subtable loaded\nERROR: Monotony error [1]: 1 2 3 4 (@)\n" },
            { "badNumber", "P=1\n1 2 x 4\n", "error -11",
                "1 data lines subtable loaded\nERROR: Bad table vector component [0]: 2 (@)\n" },
            { "badFirstArgument", "P=\n", "error -11", "ERROR: First arg value error [0]: P= (@)\n" },
            { "nanFirst", "P=1\nnan 2 3 4\n", "error -11",
                "1 data lines subtable loaded\nERROR: Monotony error [0]: nan 2 3 4 (@)\n" },
            { "rowBeforeHeader", "1 2 3 4\nP=1\n", "error -12",
                "ERROR: Bad table format [0]: 1 2 3 4 (@)\n" },
            { "headersOnly", "P=1\nP=2", "error -9" },
        });
    expectValues(PARAM_TYPE_TABLE2D_T, true,
        { { "otherType", "P=1\n1 2 3 4\n", "P=1(1 2 3 4)",
            "1 data lines subtable loaded\n1 subtables loaded\n" } });
}

TEST(Values, dataFilesAreDecodedInTheLocale)
{
    const std::vector<ValueCase> lostInC {
        { "markIsText", std::string(utf8Mark) + "5\n", "error -11", "ERROR: Bad const value:  (@)\n" },
        { "commentBeyondAscii", "7\n# \xC3\xA4\n", "7" },
        { "unitBeyondAscii", "7\n8 \xC2\xB5m\n", "7" },
    };
    const std::vector<ValueCase> keptInUtf8 {
        { "markIsText", std::string(utf8Mark) + "5\n", "error -11",
            "ERROR: Bad const value: \xEF\xBB\xBF"
            "5 (@)\n" },
        { "unitBeyondAscii", "7\n8 \xC2\xB5m\n", "8" },
        { "brokenLineIsLost", "7\n8 \xC2\n", "7" },
    };
    expectValues(PARAM_TYPE_CONSTANT, false, lostInC);
    const ScopedLocale utf8("C.UTF-8");
    expectValues(PARAM_TYPE_CONSTANT, false, keptInUtf8);
}

struct HeadCase {
    const char* name;
    const char* head;
    Tree more;
    const char* value;
    const char* log = "";
};

TEST(Values, headsAndFiles)
{
    const HeadCase cases[] = {
        { "vectorFlagIsExact", "Vector=1 \nType=1\nData=v", { { "I/v", "1 2 3\n" } }, "1" },
        { "unknownType", "Vector=0\nType=9\nData=v", { { "I/v", "1\n" } }, "error -2" },
        { "missingFileComesFirst", "Vector=0\nType=9\nData=v", {}, "error -3",
            "ERROR: Parameter data file doesn't exists: $/I/v\n" },
        { "typeIsNarrowed", "Vector=0\nType=4294967297\nData=v", { { "I/v", "1\n" } }, "1" },
        { "subdirectory", "Vector=0\nType=1\nData=P/v", { { "I/P/v", "8\n" } }, "8" },
        { "noName", "Vector=0\nType=1\nData=", {}, "error -7",
            "ERROR: Cannot read parameter data file: $/I/\n" },
        { "directory", "Vector=0\nType=1\nData=P", {}, "error -7",
            "ERROR: Cannot read parameter data file: $/I/P\n" },
        { "unreadable", "Vector=0\nType=2\nData=v", { { "I/v", "/proc/self/mem", Kind::link } }, "error -7",
            "ERROR: Cannot read parameter data file: $/I/v\n" },
        { "withoutEnd", "Vector=1\nType=2\nData=v", { { "I/v", "/dev/zero", Kind::link } }, "error -7",
            "ERROR: Cannot read parameter data file: $/I/v\n" },
        { "danglingLink", "Vector=0\nType=1\nData=v", { { "I/v", "nowhere", Kind::link } }, "error -3",
            "ERROR: Parameter data file doesn't exists: $/I/v\n" },
        { "cannotBeOpened", "Vector=0\nType=1\nData=v", { { "I/v", "", Kind::socket } }, "error -6",
            "ERROR: Cannot open parameter data file: $/I/v\n" },
        { "fifoHoldsNothing", "Vector=0\nType=4\nData=v", { { "I/v", "", Kind::fifo } }, "error -9" },
    };
    for (const HeadCase& row : cases) {
        SCOPED_TRACE(row.name);
        const TempDatabase tree(bareIron
            + Tree { { "default.lst", "" }, { "I/v.prh", std::string("ID=1\n") + row.head } } + row.more);
        const OpenDatabase db(tree);
        EXPECT_EQ(valueText(db.id, { 5 }, 1), row.value);
        EXPECT_EQ(tree.log(), row.log);
    }
}

TEST(Values, ownersAndCodes)
{
    const TempDatabase tree(water + bareIron);
    const OpenDatabase db(tree);
    EXPECT_EQ(valueText(db.id, { 99 }, 9), "error -2");
    EXPECT_EQ(valueText(db.id, { 4 }, 7), "error -2") << "a parameter of the phase is none of the substance";
    EXPECT_EQ(valueText(db.id, { 5 }, 9), "error -9");
    EXPECT_EQ(valueText(db.id, { 4, 99 }, 7), "error -2");
    EXPECT_EQ(valueText(db.id, { 4, 2 }, 9), "error -2");
    EXPECT_EQ(valueText(db.id, { 5, 1 }, 7), "error -9");
    EXPECT_EQ(valueText(db.id, { 4, -1, 99 }, 8), "error -2");
    EXPECT_EQ(valueText(db.id, { 4, -1, 3 }, 7), "error -2");
    EXPECT_EQ(valueText(db.id, { 5, -1, 3 }, 8), "error -9");
    EXPECT_EQ(tree.log(), "") << "none of these is logged";
}

TEST(Values, largeFiles)
{
    std::string rows;
    std::string subtables;
    std::string listedRows;
    std::string listedSubtables;
    for (int i = 0; i < 10000; ++i) {
        const std::string row = std::to_string(i) + " " + numberText(i / 7.);
        rows += row + "\n";
        listedRows += "(" + row + ")";
        if (i % 50 == 0) {
            subtables += "P=" + std::to_string(i) + "\n" + std::string(static_cast<std::size_t>(i % 900), '#')
                + "\n";
            listedSubtables += "P=" + std::to_string(i);
        }
        subtables += row + "\n";
        listedSubtables += "(" + row + ")";
    }
    const TempDatabase tree(bareIron
        + Tree { { "I/a.prh", "ID=1\nVector=0\nType=2\nData=a" }, { "I/a", rows },
            { "I/b.prh", "ID=2\nVector=0\nType=4\nData=b" }, { "I/b", subtables } });
    const OpenDatabase db(tree);
    EXPECT_EQ(valueText(db.id, { 5 }, 1), listedRows);
    EXPECT_EQ(valueText(db.id, { 5 }, 2), listedSubtables);
}

TEST(Values, outliveTheDatabase)
{
    const TempDatabase tree(water);
    long id = 0;
    ASSERT_EQ(qmdbOpen(tree.path().c_str(), L"", L"", false, &id), QMDB_OK);
    IDbData* raw = nullptr;
    ASSERT_EQ(qmdbGetParamValue(id, 4, 2, -1, 7, &raw), QMDB_OK);
    const Value value(raw);
    tree.make({ "W/L/d.dat", "1 2\n3 4\n" });
    EXPECT_EQ(valueText(id, { 4, 2 }, 7), "(1 2)(3 4)") << "every call reads the file";
    ASSERT_EQ(qmdbClose(id), QMDB_OK);
    EXPECT_EQ(value->type, PARAM_TYPE_TABLE_T);
    EXPECT_FALSE(value->isVector);
    EXPECT_EQ(static_cast<const IDbDataTable&>(*value).rows[0].y, 996.5);
}

} // namespace
