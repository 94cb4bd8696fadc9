// Which entries of the tree count as descriptors, and what odd names do.

#include "support/OpenDatabase.h"
#include "support/ScopedLocale.h"
#include "support/trees.h"

#include <gtest/gtest.h>

namespace {

using namespace test;

const std::string head = "ID=7\nVector=0\nType=2\nData=d.dat\n";

/// A head of so many bytes.
std::string longHead(std::size_t size)
{
    std::string text = head;
    while (text.size() + 3 <= size) {
        text += "Z=\n";
    }
    return text.append(size - text.size(), '\n');
}

/// The same head many times, more than is read ahead in one directory.
Tree manyHeads()
{
    Tree tree;
    for (int i = 0; i < 30; ++i) {
        tree.push_back({ "W/L/d" + std::to_string(i) + ".prh", longHead(3000) });
    }
    return tree;
}

struct EntryCase {
    const char* name;
    Tree more;
    std::string log;
    std::string listed = waterListing;
};

const EntryCase entryCases[] = {
    { "wrongCase", { { "W/v.MTD", "" }, { "W/L/l.Phd", "" }, { "8.PRD", "" } }, "" },
    { "extensionInside", { { "W/v.mtd.bak", "" }, { "W/mtd", "" }, { "W/v.mtdx", "" } }, "" },
    { "leadingPointIsAnExtension", { { "I/.mtd", bareIron[0].bytes }, { "I/P/.phd", bareIron[1].bytes } }, "",
        std::string(waterListing) + bareIronListing },
    { "directoryNamedLikeADescriptor", { { "W/v.mtd/", "" }, { "W/L/k.prh/", "" }, { "8.prd/", "" } }, "" },
    { "descriptorInTheRoot", { { "v.mtd", "" }, { "l.phd", "" } }, "" },
    { "deeperLevelsAreNotSearched",
        { { "N/N/n.mtd", "" }, { "W/N/N/n.phd", "" }, { "W/L/N/n.prh", "" }, { "N/8.prd", "" } }, "" },
    { "linkToADirectory",
        { { "elsewhere/I/P/p.phd", bareIron[1].bytes }, { "elsewhere/I/i.mtd", bareIron[0].bytes },
            { "I", "elsewhere/I", Kind::link } },
        "", std::string(waterListing) + bareIronListing },
    { "linkToAFile",
        { { "iron.txt", bareIron[0].bytes }, { "I/i.mtd", "../iron.txt", Kind::link }, bareIron[1] }, "",
        std::string(waterListing) + bareIronListing },
    { "descriptorThatLinksToADirectory", { { "W/v.mtd", "L", Kind::link } }, "" },
    { "socketCountsAsADirectory", { { "W/v.mtd", "", Kind::socket }, { "s", "", Kind::socket } }, "" },
    { "danglingLinkIsNoDirectory", { { "N", "nowhere", Kind::link } }, "" },
    { "headThatLinksToAFile", { { "W/L/h.txt", head }, { "W/L/d.prh", "h.txt", Kind::link } }, "" },
    { "headWithoutLineEnd", { { "W/L/d.prh", "X=\n" + head.substr(0, head.size() - 1) } }, "" },
    { "headOfOneBufferLessOne", { { "W/L/d.prh", longHead(4095) } }, "" },
    { "headOfOneBuffer", { { "W/L/d.prh", longHead(4096) } }, "" },
    { "headOfManyBuffers", { { "W/L/d.prh", longHead(100'000) } }, "" },
    { "tooLongALine", { { "W/L/d.prh", head + std::string(1023, 'z') + "\nID=8" } },
        "ERROR: File format error: $/W/L/d.prh(" + std::string(1022, 'z')
            + ")\nERROR: File format error (line too long): $/W/L/d.prh\n" },
    { "manyHeads", manyHeads(), "" },
    { "backslashSeparates", { { "I/a\\i.mtd", bareIron[0].bytes }, bareIron[1] },
        "ERROR: Material without phases: $/I/a\\i.mtd\n" },
};

TEST(Discovery, entries)
{
    for (const EntryCase& row : entryCases) {
        for (const Tree& others : { Tree {}, crowdIn("W") }) {
            SCOPED_TRACE(row.name + std::string(others.empty() ? "" : ", in a crowd"));
            const TempDatabase tree(water + others + row.more);
            const OpenDatabase db(tree);
            EXPECT_EQ(db.code, QMDB_OK);
            EXPECT_EQ(listing(db.id), row.listed);
            EXPECT_EQ(tree.log(), row.log);
        }
    }
}

TEST(Discovery, namesAreDecodedInTheLocale)
{
    const TempDatabase tree({ { "default.lst", "" }, { "\xC3\xA4/\xC3\xB6.mtd", bareIron[0].bytes },
        { "\xC3\xA4/p/p.phd", bareIron[1].bytes } });
    {
        const ScopedLocale utf8("C.UTF-8");
        EXPECT_EQ(listing(OpenDatabase(tree).id), bareIronListing);
    }
    const OpenDatabase db(tree, { .logInfo = true });
    EXPECT_EQ(db.code, QMDB_OK);
    EXPECT_EQ(listing(db.id), "") << "the name reads as the empty name, which leads back to the root";
    EXPECT_EQ(tree.log(),
        "Database path: $\nStart to search for materials\nProcess subdirectory one level: $\nNo files\n"
        "Materials have been added to database0\nStart to search for parameter descriptions\n"
        "Process subdirectory: $\nParameter descriptions have been added to database, 0\n");
}

TEST(Discovery, pathsBeyondAscii)
{
    const TempDatabase tree(Tree { { "\xC3\xA4/default.lst", "" }, { "\xC3\xA4/I/i.mtd", bareIron[0].bytes },
        { "\xC3\xA4/I/P/p.phd", bareIron[1].bytes }, { "logs/", "" } });
    {
        const ScopedLocale utf8("C.UTF-8");
        const OpenDatabase db(tree.path() + L"/\u00E4", {});
        EXPECT_EQ(listing(db.id), bareIronListing);
    }
    const OpenDatabase unreachable(tree.path() + L"/\u00E4", { .logDir = tree.path() + L"/logs" });
    EXPECT_EQ(unreachable.code, QMDB_E_FILE);
    EXPECT_EQ(tree.read("logs/qmdb.log"),
        "ERROR: Cannot open file: " + tree.root() + "/\xC3\xA4/default.lst\n"
            + "ERROR: EQMException with code=8001000A, subcode=0\n");
}

TEST(Discovery, rootPaths)
{
    const TempDatabase tree(Tree { { "db/default.lst", "" }, { "db/E/e.mtd", bareIron[0].bytes } });
    {
        const OpenDatabase db(tree.path() + L"/db/", { .logDir = tree.path() });
        EXPECT_EQ(tree.log(), "ERROR: Material without phases: $/db//E/e.mtd\n");
    }
    {
        const OpenDatabase db(tree.path() + L"/none", { .logDir = tree.path() });
        EXPECT_EQ(db.code, QMDB_OK) << "a missing root is an empty database";
        EXPECT_EQ(tree.log(), "ERROR: Cannot open file: $/none/default.lst\n");
    }
    const OpenDatabase db(L"", { .logDir = tree.path() });
    EXPECT_EQ(db.code, QMDB_E_FILE);
    EXPECT_EQ(tree.log(),
        "ERROR: Cannot open file: /default.lst\nERROR: EQMException with code=8001000A, subcode=0\n");
}

} // namespace
