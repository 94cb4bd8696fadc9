// Reading what only few databases hold: odd data files, large files, and values beyond their database's life.

#include "support/OpenDatabase.h"
#include "support/trees.h"

#include <gtest/gtest.h>

namespace {

using namespace test;

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

} // namespace
