// Opening and closing: the registry, the log of a whole open, refusals, where the log goes, odd roots.

#include "support/OpenDatabase.h"
#include "support/trees.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace {

using namespace test;

TEST(Registry, idsGrowByOneAndAreNeverReused)
{
    const TempDatabase tree(water);
    const TempDatabase broken(water + Tree { { "W/w.mtd", "" } });
    long first = 0;
    ASSERT_EQ(qmdbOpen(tree.path().c_str(), L"", L"", false, &first), QMDB_OK);
    const OpenDatabase second(tree);
    EXPECT_EQ(second.id, first + 1);
    const OpenDatabase refused(broken);
    EXPECT_EQ(refused.code, QMDB_E_REQUIRED_KEY);
    EXPECT_EQ(refused.id, -1);
    EXPECT_EQ(qmdbClose(first), QMDB_OK);
    EXPECT_EQ(qmdbClose(first), QMDB_E_NOT_FOUND);
    const OpenDatabase third(tree);
    EXPECT_EQ(third.id, first + 2);
    EXPECT_EQ(listing(second.id), waterListing);
}

TEST(OpenLog, wholeDatabase)
{
    const TempDatabase tree(water + Tree { { "qmdb.log", "of an earlier open\n" } });
    const OpenDatabase db(tree, { .logInfo = true });
    EXPECT_EQ(db.code, QMDB_OK);
    EXPECT_EQ(tree.log(),
        "Database path: $\n"
        "Start to search for materials\n"
        "Process subdirectory one level: $\n"
        "Start to search for phases\n"
        "Process subdirectory one level: $/W\n"
        "No files\n"
        "Start to search for phase parameters\n"
        "Process subdirectory: $/W/L\n"
        "Phase parameter head has been added to database: 7\n"
        "Phase parameters have been added, 1\n"
        "Phase has been added to database,ID=2\n"
        "Phases have been added1\n"
        "Start to search for phase changes\n"
        "Process subdirectory one level: $/W\n"
        "No files\n"
        "Start to search for phase change parameters\n"
        "Process subdirectory: $/W/M\n"
        "Phase change parameter head has been added to database: 8\n"
        "Phase change parameters have been added, 1\n"
        "Phase change has been added to database, ID=3\n"
        "Phase changes have been added1\n"
        "Start to search for material parameters\n"
        "Process subdirectory: $/W\n"
        "Material parameter head has been added to database: 9\n"
        "Material parameters have been added1\n"
        "Material has been added to database, ID=4\n"
        "Materials have been added to database1\n"
        "Start to search for parameter descriptions\n"
        "Process subdirectory: $\n"
        "Parameter description has been added to database, ID=7\n"
        "Parameter descriptions have been added to database, 1\n");
}

TEST(OpenLog, directory)
{
    const TempDatabase tree(water);
    const TempDatabase logs({ { "qmdb.log", "old\n" }, { "sub/", "" } });
    {
        const OpenDatabase silent(tree);
        EXPECT_FALSE(tree.exists("qmdb.log")) << "a clean open without information writes nothing";
        const OpenDatabase clean(tree, { .logDir = logs.path() });
        EXPECT_FALSE(logs.exists("qmdb.log")) << "the old log goes all the same";
    }
    const OpenDatabase other(tree, { .logDir = logs.path() + L"/sub", .logInfo = true });
    EXPECT_TRUE(logs.read("sub/qmdb.log").starts_with("Database path: " + tree.root() + "\n"));
    EXPECT_FALSE(tree.exists("qmdb.log"));
    const OpenDatabase sharing(tree, { .logDir = logs.path() + L"/sub" });
    EXPECT_FALSE(logs.exists("sub/qmdb.log")) << "the second open deletes the first one's log";
    const OpenDatabase missing(tree, { .logDir = logs.path() + L"/none", .logInfo = true });
    EXPECT_EQ(missing.code, QMDB_OK);
    EXPECT_FALSE(logs.exists("none"));
    logs.make({ "sub/qmdb.log/entry", "" });
    const OpenDatabase blocked(tree, { .logDir = logs.path() + L"/sub", .logInfo = true });
    EXPECT_EQ(blocked.code, QMDB_OK) << "what cannot be deleted or written is ignored";
}

struct RefusedCase {
    const char* name;
    Tree more;
    int code;
    const char* log;
};

const RefusedCase refusedCases[] = {
    { "twoSubstanceFiles", { { "W/v.mtd", "" } }, QMDB_E_FILE, "ERROR: More than one files: W\n" },
    { "twoPhaseFiles", { { "W/L/k.phd", "" } }, QMDB_E_FILE,
        "ERROR: More than one files: L\nERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "twoPhaseChangeFiles", { { "W/M/k.pcd", "" } }, QMDB_E_FILE,
        "ERROR: More than one files: M\nERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "danglingLink", { { "W/w.mtd", "nowhere", Kind::link } }, QMDB_E_FILE,
        "ERROR: Cannot open file: $/W/w.mtd\nERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "unreadable", { { "7.prd", "/proc/self/mem", Kind::link } }, QMDB_E_READ,
        "ERROR: Cannot read from  file: $/7.prd\nERROR: Cannot load parameter description file: $/7.prd\n" },
    { "unreadableHeadOfPhase", { { "W/L/d.prh", "/proc/self/mem", Kind::link } }, QMDB_E_READ,
        "ERROR: Cannot read from  file: $/W/L/d.prh\nERROR: Cannot load parameter head file: $/W/L/d.prh\n"
        "ERROR: Cannot load phase file: $/W/L/l.phd\nERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "unreadablePhaseChange", { { "W/M/m.pcd", "/proc/self/mem", Kind::link } }, QMDB_E_READ,
        "ERROR: Cannot read from  file: $/W/M/m.pcd\nERROR: Cannot load phase change file: $/W/M/m.pcd\n"
        "ERROR: Cannot load matter file: $/W/w.mtd\n" },
    { "fifoHoldsNothing", { { "W/L/l.phd", "", Kind::fifo } }, QMDB_E_REQUIRED_KEY,
        "ERROR: No required field(s) in file: $/W/L/l.phd\nERROR: Cannot load phase file: $/W/L/l.phd\n"
        "ERROR: Cannot load matter file: $/W/w.mtd\n" },
};

TEST(Open, refusesBrokenDatabases)
{
    for (const RefusedCase& row : refusedCases) {
        SCOPED_TRACE(row.name);
        const TempDatabase tree(water + row.more);
        const OpenDatabase db(tree);
        EXPECT_EQ(db.code, row.code);
        EXPECT_EQ(db.id, -1);
        EXPECT_EQ(tree.log(), row.log);
    }
}

// A directory that is there and cannot be listed must not pass for an empty one.
TEST(OpenFailures, unlistableDirectoriesAreReported)
{
    const TempDatabase tree(water
        + Tree {
            { "loop", "loop", Kind::link }, { "W/P/p.phd", "ID=9\nName=P\nAggreg=1\n" }, { "logs/", "" } });
    const std::wstring logs = tree.path() + L"/logs";
    const std::pair<std::wstring, int> roots[] = { { L"/loop", 2 }, { L"/" + std::wstring(300, L'n'), 2 },
        { L"/nothing", 0 }, { L"/default.lst", 0 } };
    for (const auto& [root, reports] : roots) {
        const OpenDatabase db(tree.path() + root, { .logDir = logs });
        EXPECT_EQ(db.code, QMDB_OK);
        std::string expected = "ERROR: Cannot open file: $" + toUtf8(root) + "/default.lst\n";
        for (int scan = 0; scan < reports; ++scan) {
            expected += "ERROR: Cannot list directory: $" + toUtf8(root) + "\n";
        }
        std::string log = tree.read("logs/qmdb.log");
        for (std::size_t at = 0; (at = log.find(tree.root(), at)) != log.npos;) {
            log.replace(at, tree.root().size(), "$");
        }
        EXPECT_EQ(log, expected);
    }
    rlimit before {};
    ::getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none { 0, before.rlim_max };
    ::setrlimit(RLIMIT_NOFILE, &none);
    long id = 0;
    const int code = qmdbOpen(tree.path().c_str(), L"", L"", false, &id);
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(code, QMDB_E_FILE) << "no descriptor is left, and IDs would start anew";
    EXPECT_EQ(id, -1);
}

} // namespace
